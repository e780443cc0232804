#include "render/newest_first.hpp"

#include "render/slice_pace.hpp"

#include <algorithm>
#include <cstddef>
#include <span>

namespace vimbo
{

namespace
{

constexpr std::int32_t least_look_after = 128;
constexpr std::int32_t most_look_after = 1 << 20;
constexpr std::int32_t most_chunks_at_once = 8192; // gone through for one batch
constexpr pixel_range nothing_touched = {INT32_MAX, INT32_MAX, -1, -1};

// Batches, of which a pass has no more than there are chunks, lie in the nearer
// half; what nothing was drawn on is at the far end. 24 bits tell the steps apart.
constexpr double depth_step = 0.5 / chunk_capacity;
constexpr GLuint half_depth = GLuint{1} << 31;
static_assert(chunk_capacity <= 1 << 20);

// A range that touches the newest run makes it longer.
void add_run(path_runs &runs, std::int32_t first, std::int32_t end)
{
    const int newest = path_run_capacity - runs.used;
    // From the vertex before: the first segment starts there.
    const std::int32_t from = std::max(first - 1, 0);
    if (runs.used > 0 && runs.first[newest] == end - 1) {
        runs.count[newest] += runs.first[newest] - from;
        runs.first[newest] = from;
        return;
    }
    ++runs.used;
    runs.first[newest - 1] = from;
    runs.count[newest - 1] = end - from;
}

void touch(pixel_range &touched, const pixel_range &range)
{
    touched = {std::min(touched.left, range.left), std::min(touched.bottom, range.bottom),
               std::max(touched.right, range.right), std::max(touched.top, range.top)};
}

// Goes on from chunk to chunk until the batch has that many vertices. Gives how
// many it has.
std::int32_t gather_batch(newest_first &pass, const path_projection &target,
                          const path_chunks &chunks, std::int32_t most_vertices)
{
    std::int32_t gathered = 0;
    pass.runs.used = 0;
    for (int i = 0; i < most_chunks_at_once && pass.undrawn > pass.first &&
                    gathered < most_vertices && pass.runs.used < path_run_capacity;
         ++i) {
        const std::int32_t chunk = (pass.undrawn - 1) / chunks.chunk_vertices;
        const std::int32_t end = pass.undrawn;
        pass.undrawn = std::max(chunk * chunks.chunk_vertices, pass.first);
        if (are_apart(chunks.boxes[chunk], pass.visible))
            continue;
        const pixel_box box = pixels_of(chunks.boxes[chunk], target);
        const pixel_range range = range_of(pass.covered, box);
        if (range.right < range.left)
            continue;
        if (is_hidden(pass.covered, box)) {
            if (!was_hidden(pass.covered, box))
                pass.spared += end - pass.undrawn;
            continue;
        }
        add_run(pass.runs, pass.undrawn, end);
        touch(pass.touched, range);
        gathered += end - pass.undrawn;
    }
    return gathered;
}

void draw_batch(newest_first &pass, const path_projection &target, const picture_parts &parts)
{
    ++pass.batches;
    const double depth = pass.batches * depth_step;
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthRange(depth, depth);
    draw_path_runs(parts.program, target.matrix, parts.mosaic.mosaic_vao, pass.runs,
                   mosaic_colours);
    glDepthRange(0, 1);
    glDepthFunc(GL_LESS);
    glDisable(GL_DEPTH_TEST);
}

void read_depths(newest_first &pass, const picture_area &area)
{
    constexpr int most = 1 << 14;
    GLuint depths[most];
    const pixel_range &range = pass.touched;
    for (int left = range.left; left <= range.right; left += most) {
        const int width = std::min(range.right - left + 1, most);
        const int rows = most / width;
        for (int row = range.bottom; row <= range.top; row += rows) {
            const int count = std::min(rows, range.top - row + 1);
            glReadPixels(area.x + left, area.y + row, width, count, GL_DEPTH_COMPONENT,
                         GL_UNSIGNED_INT, depths);
            const auto row_size = static_cast<std::size_t>(width);
            for (int i = 0; i < count; ++i)
                see_row(pass.covered, row + i, left,
                        std::span(depths).subspan(static_cast<std::size_t>(i) * row_size, row_size),
                        half_depth);
        }
    }
}

// Waits for the batches and sees what they cover. Gives the seconds that seeing took.
double see_depths(newest_first &pass, const picture_area &area)
{
    glFinish();
    const double start = pace_clock();
    begin_look(pass.covered, pass.touched);
    read_depths(pass, area);
    pass.touched = nothing_touched;
    return pace_clock() - start;
}

// What waiting and a look at one pixel take where nothing was drawn, the least ever
// seen: other programs are in the way now and then.
void measure_least_look(newest_first &pass, const picture_area &area)
{
    const double start = pace_clock();
    glClear(GL_DEPTH_BUFFER_BIT);
    pass.touched = {0, 0, 0, 0};
    see_depths(pass, area);
    const double time = pace_clock() - start;
    pass.least_look = pass.least_look > 0 ? std::min(pass.least_look, time) : time;
}

void begin_round(newest_first &pass)
{
    pass.unseen = 0;
    pass.spared = 0;
}

// Looks, and weighs what the look before has spared against what could have been
// drawn meanwhile: looks that pay come sooner.
void look(newest_first &pass, const picture_area &area, double vertices_per_second)
{
    const double cost = (pass.least_look + pass.seeing) * vertices_per_second;
    const auto spared = static_cast<double>(pass.spared);
    // What it showed spares more after this look, too: half of its cost is enough.
    if (spared > cost / 2)
        pass.look_after = std::max(pass.look_after / 2, least_look_after);
    else if (spared < cost / 3)
        pass.look_after = std::min(pass.look_after * 2, most_look_after);
    pass.seeing = see_depths(pass, area);
    begin_round(pass);
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
    pass.look_after = std::max(pass.look_after, least_look_after);
    measure_least_look(pass, target.area);
    pass.seeing = 0;
    begin_round(pass);
}

std::int32_t draw_newest(newest_first &pass, const path_projection &target,
                         const path_chunks &chunks, const picture_parts &parts,
                         std::int32_t most_vertices, double vertices_per_second)
{
    const std::int32_t most = std::min(most_vertices, pass.look_after - pass.unseen);
    const std::int32_t drawn = gather_batch(pass, target, chunks, most);
    if (drawn > 0)
        draw_batch(pass, target, parts);
    pass.drawn += drawn;
    pass.unseen += drawn;
    pass.under_way = pass.undrawn > pass.first;
    if (pass.under_way && pass.unseen >= pass.look_after)
        look(pass, target.area, vertices_per_second);
    return drawn;
}

} // namespace vimbo
