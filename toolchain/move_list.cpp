#include "toolchain/move_list.hpp"

#include <sys/mman.h>

#include <cmath>

namespace toolchain
{

namespace
{

constexpr std::size_t reserved_bytes = max_moves * sizeof(vimbo::path_vertex);

bool is_mark(const vimbo::path_vertex &move)
{
    return (move.y & 1) != 0;
}

} // namespace

move_list::move_list()
{
    void *memory = mmap(nullptr, reserved_bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        return;
    // Page by page, its first use costs as much as the moves themselves.
    madvise(memory, reserved_bytes, MADV_HUGEPAGE);
    first = static_cast<vimbo::path_vertex *>(memory);
}

move_list::~move_list()
{
    if (first != nullptr)
        munmap(first, reserved_bytes);
}

void move_list::centre(const move_extents &extents)
{
    const double centre_x = std::nearbyint((static_cast<double>(extents.left) + extents.right) / 2);
    const double centre_y = std::nearbyint((static_cast<double>(extents.bottom) + extents.top) / 2);
    // Centred, each extreme is half the extent away from the origin: it fits.
    for (vimbo::path_vertex &move : std::span(first, count)) {
        move.y =
            with_flag(static_cast<vimbo::length_unit>((move.y & ~1) - centre_y), is_mark(move));
        move.x = static_cast<vimbo::length_unit>(move.x - centre_x);
    }
}

std::span<const vimbo::path_vertex> move_list::moves() const
{
    return {first, count};
}

std::size_t move_list::mark_count() const
{
    return marks;
}

void move_list::close()
{
    published_count.store(closed, std::memory_order_release);
    published_count.notify_all();
}

void move_list::publish()
{
    published_count.store(count, std::memory_order_release);
    published_count.notify_all();
}

std::size_t move_list::await_more_than(std::size_t known) const
{
    published_count.wait(known, std::memory_order_acquire);
    const std::size_t now = published_count.load(std::memory_order_acquire);
    return now == closed ? 0 : now;
}

std::span<const vimbo::path_vertex> move_list::published(std::size_t from, std::size_t to) const
{
    return {first + from, to - from};
}

} // namespace toolchain
