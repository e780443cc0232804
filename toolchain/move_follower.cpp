#include "toolchain/move_follower.hpp"

#include <system_error>
#include <utility>

namespace toolchain
{

move_follower::move_follower(move_list &followed, taker take_moves)
    : moves(followed), take(std::move(take_moves))
{
    try {
        thread = std::jthread([this] { follow(); });
    } catch (const std::system_error &) {
        return;
    }
}

move_follower::~move_follower()
{
    finish();
}

void move_follower::finish()
{
    moves.close();
    if (thread.joinable())
        thread.join();
    take_up_to(moves.moves().size());
}

void move_follower::follow()
{
    while (const std::size_t count = moves.await_more_than(taken))
        take_up_to(count);
}

void move_follower::take_up_to(std::size_t count)
{
    if (count > taken)
        take(moves.published(taken, count));
    taken = count;
}

} // namespace toolchain
