#include "toolchain/move_follower.hpp"

#include <utility>

namespace toolchain
{

move_follower::move_follower(move_list &followed, taker take_moves)
    : moves(followed), take(std::move(take_moves)), thread([this] { follow(); })
{
}

move_follower::~move_follower()
{
    moves.close();
    thread.join();
}

void move_follower::follow()
{
    std::size_t taken = 0;
    for (;;) {
        const std::span<const vimbo::path_vertex> block = moves.await_block(taken);
        if (block.empty())
            return;
        take(block);
        taken += block.size();
        moves.release(taken);
    }
}

} // namespace toolchain
