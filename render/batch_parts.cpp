#include "render/batch_parts.hpp"

#include "render/blank_lines.hpp"
#include "render/crossed_pixels.hpp"

#include <algorithm>
#include <bit>
#include <span>

namespace vimbo
{

namespace
{

constexpr std::int32_t part_vertices = 16;    // left out or drawn together, of a chunk
constexpr std::int32_t stretch_of_parts = 64; // looked at first, of a longer chunk
static_assert(part_vertices <= most_lines_at_once);

// From the vertex before a part: its first segment starts there.
std::span<const path_vertex> strip_of(newest_first &pass, const mosaic_state &mosaic,
                                      std::int32_t first, std::int32_t end)
{
    return vertices_between(pass.vertices, mosaic, std::max(first - 1, 0), end);
}

// Notes that a part is covered.
void leave_out(newest_first &pass, const path_part &part)
{
    pass.left_out += part.end - part.first;
    if (!was_hidden(pass.covered, part.box, part.range))
        pass.looks.spared += part.end - part.first;
}

// True of a part that cannot be seen, as it is covered or lies outside.
bool is_left_out(newest_first &pass, const path_projection &target, const mosaic_state &mosaic,
                 const path_part &part)
{
    const path_sight sight = sight_of(pass.covered, part);
    if (sight == path_sight::outside)
        return true;
    if (sight == path_sight::seen)
        return false;
    if (sight == path_sight::doubtful) {
        if (part.end - part.first >= window_vertices) // more than can be read at once
            return false;
        const std::span<const path_vertex> strip = strip_of(pass, mosaic, part.first, part.end);
        if (!is_doubt_unfounded(pass.covered, part, strip, target))
            return false;
    }
    leave_out(pass, part);
    return true;
}

void add_to_batch(newest_first &pass, const path_part &part)
{
    add_run(pass.runs, part.first, part.end);
    touch(pass.looks, part.range);
}

// Where next to nothing is left out, lines are looked at in some chunks only: so it is
// still seen when that changes.
bool is_worth_looking_into(newest_first &pass, std::int32_t chunk)
{
    constexpr std::int32_t stretch = 1 << 16;
    constexpr std::int32_t some = 8;
    if (pass.in_view >= stretch) {
        pass.much_left_out = pass.left_out >= pass.in_view / 4;
        pass.in_view = 0;
        pass.left_out = 0;
    }
    return pass.much_left_out || chunk % some == 0;
}

// Lines are looked at one by one where they are so long that what is drawn of them for
// nothing costs more.
bool are_long(const path_part &part)
{
    constexpr double long_line = 32; // pixels
    const pixel_box &box = part.box;
    return std::max(box.right - box.left, box.top - box.bottom) >= long_line;
}

// And where they are so short that two of three cover no pixel.
bool are_mostly_blank(std::uint32_t lines_to_draw)
{
    return 3 * std::popcount(lines_to_draw) <= part_vertices;
}

// Adds those of these lines of a part to the batch that can be seen. Gives how many.
std::int32_t take_lines(newest_first &pass, const path_projection &target, const path_part &part,
                        std::span<const path_vertex> strip, std::uint32_t lines)
{
    std::int32_t taken = 0;
    std::int32_t end = part.end;
    for (std::size_t at = strip.size() - 1; at > 0; --at, --end) {
        if ((lines >> (at - 1) & 1) == 0 ||
            is_line_hidden(pass.covered, strip[at - 1], strip[at], part.off, target)) {
            ++pass.left_out;
            continue;
        }
        add_run(pass.runs, end - 1, end);
        cover_crossed(pass.covered, strip.subspan(at - 1, 2), part.off, target);
        ++taken;
    }
    touch(pass.looks, part.range);
    return taken;
}

// Adds a part to the batch: what it covers for certain is covered from here on. Gives how
// many vertices count as drawn: of long lines the drawn ones; of short ones all, as going
// through them takes as long.
std::int32_t take_part(newest_first &pass, const path_projection &target, const path_part &part,
                       std::span<const path_vertex> strip)
{
    constexpr std::uint32_t all_lines = ~std::uint32_t{0};
    if (are_long(part))
        return take_lines(pass, target, part, strip, all_lines);
    const std::uint32_t lines = lines_with_pixels(strip, part.off, target);
    if (are_mostly_blank(lines)) {
        take_lines(pass, target, part, strip, lines);
    } else {
        add_to_batch(pass, part);
        cover_crossed(pass.covered, strip, part.off, target);
    }
    return part.end - part.first;
}

// The same with what can be seen of a part, or may be.
std::int32_t take_in_sight(newest_first &pass, const path_projection &target, const path_part &part,
                           std::span<const path_vertex> strip)
{
    const path_sight sight = sight_of(pass.covered, part);
    if (sight == path_sight::seen)
        return take_part(pass, target, part, strip);
    if (sight == path_sight::outside)
        return 0;
    if (sight == path_sight::doubtful) {
        const std::uint32_t lines = doubtful_lines(strip, part.off, target);
        if (lines != 0)
            return take_lines(pass, target, part, strip, lines);
    }
    leave_out(pass, part);
    return 0;
}

// The same with all parts from the vertex `first` to `end`.
std::int32_t take_parts(newest_first &pass, const path_projection &target,
                        const mosaic_state &mosaic, std::int32_t first, std::int32_t end)
{
    std::int32_t taken = 0;
    for (std::int32_t part_end = end; part_end > first; part_end -= part_vertices) {
        const std::int32_t part_first = std::max(part_end - part_vertices, first);
        const std::span<const path_vertex> strip = strip_of(pass, mosaic, part_first, part_end);
        const path_part part =
            part_of(pass.covered, target, box_around(strip), part_first, part_end);
        taken += take_in_sight(pass, target, part, strip);
    }
    return taken;
}

// The same with all of a chunk. Of a hundred million lines of a spiral most are hidden, and
// next to none of their chunks as a whole.
std::int32_t take_stretches(newest_first &pass, const path_projection &target,
                            const mosaic_state &mosaic, std::int32_t first, std::int32_t end)
{
    if (end - first <= stretch_of_parts)
        return take_parts(pass, target, mosaic, first, end);
    std::int32_t taken = 0;
    for (std::int32_t stretch_end = end; stretch_end > first; stretch_end -= stretch_of_parts) {
        const std::int32_t stretch_first = std::max(stretch_end - stretch_of_parts, first);
        const path_box box = box_around(strip_of(pass, mosaic, stretch_first, stretch_end));
        const path_part stretch = part_of(pass.covered, target, box, stretch_first, stretch_end);
        if (!is_left_out(pass, target, mosaic, stretch))
            taken += take_parts(pass, target, mosaic, stretch_first, stretch_end);
    }
    return taken;
}

} // namespace

std::int32_t take_chunk(newest_first &pass, const path_projection &target,
                        const mosaic_state &mosaic, std::int32_t chunk, const path_part &whole)
{
    if (is_left_out(pass, target, mosaic, whole))
        return 0;
    if (is_worth_looking_into(pass, chunk))
        return take_stretches(pass, target, mosaic, whole.first, whole.end);
    add_to_batch(pass, whole);
    return whole.end - whole.first;
}

} // namespace vimbo
