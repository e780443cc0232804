#include "render/newest_first.hpp"

#include "render/batch_parts.hpp"
#include "render/path_sight.hpp"

#include <algorithm>

namespace vimbo
{

namespace
{

constexpr std::int32_t most_chunks_at_once = 8192; // gone through for one batch
constexpr int most_runs = path_run_capacity / 2;   // those of one chunk more fit
static_assert(stretch_vertices / 2 <= path_run_capacity - most_runs,
              "chunks are not longer than a stretch, and every other line may be left out");

// Batches, of which a pass has no more than there are chunks, lie in the nearer
// half; what nothing was drawn on is at the far end. 24 bits tell the steps apart.
constexpr double depth_step = 0.5 / chunk_capacity;
static_assert(chunk_capacity <= 1 << 20);

// Goes back past the chunk that ends at `undrawn`, or past a whole group that is outside of
// the picture. Gives how many vertices of it are in view.
std::int32_t step_back(const newest_first &pass, const path_chunks &chunks, std::int32_t &undrawn)
{
    const std::int32_t end = undrawn;
    const std::int32_t group_vertices = chunks.chunk_vertices * group_chunks;
    if (end % group_vertices == 0 && end - group_vertices >= pass.first &&
        are_apart(chunks.group_boxes[end / group_vertices - 1], pass.visible)) {
        undrawn = end - group_vertices;
        return 0;
    }
    const std::int32_t chunk = (end - 1) / chunks.chunk_vertices;
    undrawn = std::max(chunk * chunks.chunk_vertices, pass.first);
    return are_apart(chunks.boxes[chunk], pass.visible) ? 0 : end - undrawn;
}

// Goes on from chunk to chunk until the batch has that many vertices. Gives how many it has,
// counted as in take_chunk.
std::int32_t gather_batch(newest_first &pass, const path_projection &target,
                          const path_chunks &chunks, const mosaic_state &mosaic,
                          std::int32_t most_vertices)
{
    std::int32_t gathered = 0;
    pass.runs.used = 0;
    for (int i = 0; i < most_chunks_at_once && pass.undrawn > pass.first &&
                    gathered < most_vertices && pass.runs.used < most_runs;
         ++i) {
        const std::int32_t end = pass.undrawn;
        const std::int32_t in_view = step_back(pass, chunks, pass.undrawn);
        if (in_view == 0)
            continue;
        const std::int32_t chunk = pass.undrawn / chunks.chunk_vertices;
        const path_part whole =
            part_of(pass.covered, target, chunks.boxes[chunk], pass.undrawn, end);
        pass.gone_through += in_view;
        pass.in_view += in_view;
        gathered += take_chunk(pass, target, mosaic, chunk, whole);
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
    pass.gone_through = 0;
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

bool is_half_through(const newest_first &pass, const path_chunks &chunks)
{
    std::int32_t left = 0;
    std::int32_t undrawn = pass.undrawn;
    while (undrawn > pass.first && left <= pass.gone_through)
        left += step_back(pass, chunks, undrawn);
    return left <= pass.gone_through;
}

} // namespace vimbo
