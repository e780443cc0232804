#include "render/newest_first.hpp"

#include "render/blank_lines.hpp"
#include "render/crossed_pixels.hpp"
#include "render/path_sight.hpp"

#include <algorithm>
#include <bit>
#include <span>

namespace vimbo
{

namespace
{

constexpr std::int32_t most_chunks_at_once = 8192; // gone through for one batch
constexpr int most_runs = path_run_capacity / 2;   // those of one chunk more fit
constexpr std::int32_t part_vertices = 16;         // left out or drawn together, of a chunk
constexpr std::int32_t stretch_of_parts = 64;      // looked at first, of a longer chunk
static_assert(part_vertices <= most_lines_at_once);
static_assert(stretch_vertices / 2 <= path_run_capacity - most_runs,
              "chunks are not longer than a stretch, and every other line may be left out");

// Batches, of which a pass has no more than there are chunks, lie in the nearer
// half; what nothing was drawn on is at the far end. 24 bits tell the steps apart.
constexpr double depth_step = 0.5 / chunk_capacity;
static_assert(chunk_capacity <= 1 << 20);

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
std::int32_t take_chunk(newest_first &pass, const path_projection &target,
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

// Leaves the group at whose end the pass is out, where it is outside of the picture.
bool skip_group(newest_first &pass, const path_chunks &chunks)
{
    const std::int32_t group_vertices = chunks.chunk_vertices * group_chunks;
    if (pass.undrawn % group_vertices != 0 || pass.undrawn - group_vertices < pass.first ||
        !are_apart(chunks.group_boxes[pass.undrawn / group_vertices - 1], pass.visible))
        return false;
    pass.undrawn -= group_vertices;
    return true;
}

// Goes on from chunk to chunk until the batch has that many vertices. Gives how many it has,
// counted as in take_part.
std::int32_t gather_batch(newest_first &pass, const path_projection &target,
                          const path_chunks &chunks, const mosaic_state &mosaic,
                          std::int32_t most_vertices)
{
    std::int32_t gathered = 0;
    pass.runs.used = 0;
    for (int i = 0; i < most_chunks_at_once && pass.undrawn > pass.first &&
                    gathered < most_vertices && pass.runs.used < most_runs;
         ++i) {
        if (skip_group(pass, chunks))
            continue;
        const std::int32_t chunk = (pass.undrawn - 1) / chunks.chunk_vertices;
        const std::int32_t end = pass.undrawn;
        pass.undrawn = std::max(chunk * chunks.chunk_vertices, pass.first);
        if (are_apart(chunks.boxes[chunk], pass.visible))
            continue;
        const path_part whole =
            part_of(pass.covered, target, chunks.boxes[chunk], pass.undrawn, end);
        pass.in_view += end - pass.undrawn;
        if (is_left_out(pass, target, mosaic, whole))
            continue;
        if (is_worth_looking_into(pass, chunk)) {
            gathered += take_chunk(pass, target, mosaic, whole.first, whole.end);
        } else {
            add_to_batch(pass, whole);
            gathered += whole.end - whole.first;
        }
    }
    return gathered;
}

void begin_depth(const newest_first &pass)
{
    if (pass.batches == 1)
        glClear(GL_DEPTH_BUFFER_BIT);
    const double depth = pass.batches * depth_step;
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthRange(depth, depth);
}

void end_depth()
{
    glDepthRange(0, 1);
    glDepthFunc(GL_LESS);
    glDisable(GL_DEPTH_TEST);
}

void draw_batch(newest_first &pass, const path_projection &target, const picture_parts &parts)
{
    ++pass.batches;
    // Where it is the only one, its order alone decides.
    const bool others = pass.batches > 1 || pass.under_way;
    if (others)
        begin_depth(pass);
    draw_path_runs(parts.program, target.matrix, parts.mosaic.mosaic_vao, pass.runs,
                   mosaic_colours);
    if (others)
        end_depth();
}

} // namespace

void begin_newest_first(newest_first &pass, const path_projection &target, std::int32_t first,
                        std::int32_t end)
{
    clear_covered(pass.covered, target.area.width, target.area.height);
    pass.under_way = true;
    pass.first = first;
    pass.undrawn = end;
    pass.batches = 0;
    pass.drawn = 0;
    pass.visible = lengths_in(target);
    pass.in_view = 0;
    pass.left_out = 0;
    pass.much_left_out = true;
    forget_vertices(pass.vertices);
    begin_looks(pass.looks);
}

std::int32_t draw_newest(newest_first &pass, const path_projection &target,
                         const path_chunks &chunks, const picture_parts &parts,
                         std::int32_t most_vertices, double vertices_per_second)
{
    const std::int32_t most = std::min(most_vertices, pass.looks.look_after - pass.looks.unseen);
    const std::int32_t drawn = gather_batch(pass, target, chunks, parts.mosaic, most);
    pass.under_way = pass.undrawn > pass.first;
    pass.drawn += drawn;
    if (pass.runs.used > 0) {
        draw_batch(pass, target, parts);
        pass.looks.unseen += drawn;
    }
    if (pass.under_way && is_look_due(pass.looks))
        look_at_depths(pass.looks, pass.covered, target.area, vertices_per_second);
    return drawn;
}

} // namespace vimbo
