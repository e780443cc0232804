// Takes a source's moves while it still makes them: the interpreter has one
// processor, what becomes of the moves another.
#pragma once

#include "toolchain/move_list.hpp"

#include <functional>
#include <thread>

namespace toolchain
{

/// Follows the list from its beginning to its close, which is at the follower's
/// end: then all moves are taken.
class move_follower
{
public:
    /// Takes the next moves, each once, in their order; called by another thread.
    using taker = std::function<void(std::span<const vimbo::path_vertex>)>;

    move_follower(move_list &followed, taker take_moves);
    ~move_follower();
    move_follower(const move_follower &) = delete;
    move_follower &operator=(const move_follower &) = delete;

private:
    void follow();

    move_list &moves;
    taker take;
    std::thread thread;
};

} // namespace toolchain
