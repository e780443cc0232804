// The moves on their way from the thread that makes them to the one that takes them.
#include "toolchain/move_list.hpp"

#include "tests/support/wait.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace
{

using toolchain::move_list;
using toolchain::move_use;

constexpr std::size_t memory = std::size_t{1} << 18; // in moves, of a list that hands on
constexpr std::size_t block = std::size_t{1} << 16;

vimbo::path_vertex move_number(std::size_t number)
{
    const auto x = static_cast<vimbo::length_unit>(number);
    return {x, 2 * x + 1};
}

class MoveList : public testing::Test
{
protected:
    // Another thread makes so many moves and closes the list.
    void make(std::size_t count)
    {
        maker = std::thread([this, count] {
            for (std::size_t i = 0; i < count; ++i) {
                const vimbo::path_vertex move = move_number(i);
                if (moves.append(move.x, move.y, true) != toolchain::move_fault::none)
                    break;
                ++made;
            }
            moves.close();
        });
    }
    ~MoveList() override
    {
        moves.release(std::size_t{1} << 40);
        if (maker.joinable())
            maker.join();
    }

    // The number of the first that is not what was made; `count` where all are.
    static std::size_t first_wrong(std::span<const vimbo::path_vertex> some, std::size_t from)
    {
        for (std::size_t i = 0; i < some.size(); ++i) {
            const vimbo::path_vertex wanted = move_number(from + i);
            if (some[i].x != wanted.x || some[i].y != wanted.y)
                return from + i;
        }
        return from + some.size();
    }

    move_list moves = move_list(move_use::handed_on);
    std::atomic<std::size_t> made = 0;
    std::thread maker;
};

TEST_F(MoveList, WaitsWithTheNextBlockUntilItsMemoryIsReleased)
{
    make(3 * memory);
    ASSERT_TRUE(rig::wait_until([this] { return made >= memory - 1; }));
    for (std::size_t taken = 0; taken < 2 * memory; taken += block) {
        const std::span<const vimbo::path_vertex> some = moves.await_block(taken);
        // As a reader that is slow: whoever does not wait for it gets far ahead.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_LE(made, taken + memory) << "moves are made over those still to be read";
        ASSERT_EQ(first_wrong(some, taken), taken + block) << "this move was written over";
        moves.release(taken + block);
    }
}

TEST_F(MoveList, HandsEveryMoveOnInItsOrder)
{
    constexpr std::size_t count = 2 * memory + 3 * block + 7;
    make(count);
    std::size_t taken = 0;
    for (;;) {
        const std::span<const vimbo::path_vertex> some = moves.await_block(taken);
        if (some.empty())
            break;
        ASSERT_EQ(first_wrong(some, taken), taken + some.size());
        taken += some.size();
        moves.release(taken);
    }
    EXPECT_EQ(taken, count);
    EXPECT_EQ(moves.move_count(), count);
    EXPECT_EQ(moves.mark_count(), count);
}

// Of this process, in pages.
std::size_t address_space()
{
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages;
}

TEST(MoveListsMemory, IsGivenBackWithTheList)
{
    const std::size_t before = address_space();
    {
        const move_list moves(move_use::kept);
        EXPECT_GT(address_space(), before + 100000) << "it is reserved at once";
    }
    EXPECT_LT(address_space(), before + 1000);
}

} // namespace
