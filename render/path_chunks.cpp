#include "render/path_chunks.hpp"

#include "render/vertex_pairs.hpp"
#include "render/vertex_window.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vimbo
{

namespace
{

constexpr std::int32_t least_chunk = 16;
static_assert(std::int64_t{stretch_vertices} * chunk_capacity > INT32_MAX,
              "chunks are never longer than a stretch");

// Two vertices lie in four lanes.
struct rounded_box {
    four_floats low;
    four_floats high;
};

void add_pair(rounded_box &box, const path_vertex *pair)
{
    const four_floats now = floats_of(pair);
    box.low = now < box.low ? now : box.low;
    box.high = now > box.high ? now : box.high;
}

rounded_box rounded_box_of(std::span<const path_vertex> vertices, const path_vertex &from)
{
    const path_vertex start[] = {from, vertices.back()};
    const four_floats first = floats_of(start);
    // Two sums, which do not wait for each other.
    rounded_box even = {first, first};
    rounded_box odd = even;
    std::size_t i = 0;
    for (; i + 4 <= vertices.size(); i += 4) {
        add_pair(even, &vertices[i]);
        add_pair(odd, &vertices[i + 2]);
    }
    if (i + 2 <= vertices.size())
        add_pair(even, &vertices[i]);
    return {odd.low < even.low ? odd.low : even.low, odd.high > even.high ? odd.high : even.high};
}

// What a length was at least, or at most, before it was rounded to single precision:
// up to 24 bits it is the same.
length_unit unrounded(float rounded, double direction)
{
    constexpr double share = 1.0 / (1 << 23);
    const double length =
        std::floor(std::fabs(double{rounded}) * share) * direction + double{rounded};
    return static_cast<length_unit>(std::clamp(length, double{INT32_MIN}, double{INT32_MAX}));
}

path_box box_of(std::span<const path_vertex> vertices, const path_vertex &from)
{
    const rounded_box box = rounded_box_of(vertices, from);
    return {unrounded(std::min(box.low[0], box.low[2]), -1),
            unrounded(std::min(box.low[1], box.low[3]), -1),
            unrounded(std::max(box.high[0], box.high[2]), 1),
            unrounded(std::max(box.high[1], box.high[3]), 1)};
}

path_box box_around(const path_box &a, const path_box &b)
{
    return {std::min(a.left, b.left), std::min(a.bottom, b.bottom), std::max(a.right, b.right),
            std::max(a.top, b.top)};
}

void add_to_group(path_chunks &chunks, std::int32_t chunk)
{
    const path_box &box = chunks.boxes[chunk];
    path_box &group = chunks.group_boxes[chunk / group_chunks];
    group = chunk % group_chunks == 0 ? box : box_around(group, box);
}

} // namespace

path_box box_around(std::span<const path_vertex> vertices)
{
    return box_of(vertices, vertices.front());
}

void fit_chunks(path_chunks &chunks, const mosaic_state &mosaic)
{
    if (chunks.mosaic_generation == mosaic.mosaic_generation &&
        chunks.vertex_count == mosaic.mosaic_vertex_count)
        return;
    chunks.mosaic_generation = mosaic.mosaic_generation;
    chunks.vertex_count = mosaic.mosaic_vertex_count;
    chunks.boxed_vertices = 0;
    chunks.chunk_vertices = least_chunk;
    while (std::int64_t{chunks.chunk_vertices} * chunk_capacity < chunks.vertex_count)
        chunks.chunk_vertices *= 2;
}

bool are_boxed(const path_chunks &chunks, const mosaic_state &mosaic)
{
    return chunks.mosaic_generation == mosaic.mosaic_generation &&
           chunks.vertex_count == mosaic.mosaic_vertex_count &&
           chunks.boxed_vertices == chunks.vertex_count;
}

void box_stretch(path_chunks &chunks, const mosaic_state &mosaic)
{
    const std::int32_t first = chunks.boxed_vertices;
    const auto count =
        static_cast<std::size_t>(std::min(stretch_vertices, chunks.vertex_count - first));
    // A copy would take as long as all else.
    if (const path_vertex *vertices = map_vertices(mosaic, first, count)) {
        box_vertices(chunks, std::span(vertices, count));
        unmap_vertices();
        return;
    }
    path_vertex copy[stretch_vertices];
    read_vertices(mosaic, first, std::span(copy).first(count));
    box_vertices(chunks, std::span(copy).first(count));
}

void box_vertices(path_chunks &chunks, std::span<const path_vertex> vertices)
{
    while (!vertices.empty()) {
        const std::int32_t within = chunks.boxed_vertices % chunks.chunk_vertices;
        const std::int32_t chunk = chunks.boxed_vertices / chunks.chunk_vertices;
        path_box &box = chunks.boxes[chunk];
        const path_vertex &from = chunks.boxed_vertices > 0 ? chunks.last_boxed : vertices[0];
        const auto count =
            std::min(static_cast<std::size_t>(chunks.chunk_vertices - within), vertices.size());
        const path_box added = box_of(vertices.first(count), from);
        box = within == 0 ? added : box_around(box, added);
        add_to_group(chunks, chunk);
        chunks.last_boxed = vertices[count - 1];
        chunks.boxed_vertices += static_cast<std::int32_t>(count);
        vertices = vertices.subspan(count);
    }
}

} // namespace vimbo
