// Takes a source's moves while it still makes them: the interpreter has one
// processor, what becomes of the moves another.
#pragma once

#include "toolchain/move_list.hpp"

#include <functional>
#include <thread>

namespace toolchain
{

class move_follower
{
public:
    /// Takes the next moves, each once, in their order; called by another thread.
    using taker = std::function<void(std::span<const vimbo::path_vertex>)>;

    move_follower(move_list &followed, taker take_moves);
    ~move_follower();
    move_follower(const move_follower &) = delete;
    move_follower &operator=(const move_follower &) = delete;

    /// To be called once the source has ended: returns when all is taken.
    void finish();

private:
    void follow();
    void take_up_to(std::size_t count);

    move_list &moves;
    taker take;
    std::size_t taken = 0;
    std::jthread thread; // none where the system grants none: finish takes all
};

} // namespace toolchain
