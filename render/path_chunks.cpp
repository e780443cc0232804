#include "render/path_chunks.hpp"

#include <algorithm>
#include <cstddef>

namespace vimbo
{

namespace
{

constexpr std::int32_t least_chunk = 16;
static_assert(std::int64_t{stretch_vertices} * chunk_capacity > INT32_MAX,
              "chunks are never longer than a stretch");

// Two vertices at a time, as a vector register holds them.
path_box box_of(std::span<const path_vertex> vertices, path_box box)
{
    length_unit low[4] = {box.left, box.bottom, box.left, box.bottom};
    length_unit high[4] = {box.right, box.top, box.right, box.top};
    const std::size_t pairs = vertices.size() / 2;
    for (std::size_t i = 0; i < pairs; ++i) {
        const path_vertex &a = vertices[2 * i];
        const path_vertex &b = vertices[2 * i + 1];
        const length_unit now[4] = {a.x, a.y, b.x, b.y};
        for (int k = 0; k < 4; ++k) {
            low[k] = now[k] < low[k] ? now[k] : low[k];
            high[k] = now[k] > high[k] ? now[k] : high[k];
        }
    }
    box = {std::min(low[0], low[2]), std::min(low[1], low[3]), std::max(high[0], high[2]),
           std::max(high[1], high[3])};
    if (vertices.size() % 2 != 0) {
        const path_vertex &last = vertices.back();
        box = {std::min(box.left, last.x), std::min(box.bottom, last.y),
               std::max(box.right, last.x), std::max(box.top, last.y)};
    }
    return box;
}

} // namespace

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
    path_vertex stretch[stretch_vertices];
    const std::int32_t count =
        std::min(stretch_vertices, chunks.vertex_count - chunks.boxed_vertices);
    glBindBuffer(GL_COPY_READ_BUFFER, mosaic.mosaic_vbo);
    glGetBufferSubData(
        GL_COPY_READ_BUFFER,
        static_cast<GLintptr>(chunks.boxed_vertices) * static_cast<GLintptr>(sizeof(path_vertex)),
        static_cast<GLsizeiptr>(count) * static_cast<GLsizeiptr>(sizeof(path_vertex)), stretch);
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
    box_vertices(chunks, std::span(stretch).first(static_cast<std::size_t>(count)));
}

void box_vertices(path_chunks &chunks, std::span<const path_vertex> vertices)
{
    while (!vertices.empty()) {
        const std::int32_t within = chunks.boxed_vertices % chunks.chunk_vertices;
        path_box &box = chunks.boxes[chunks.boxed_vertices / chunks.chunk_vertices];
        if (within == 0) {
            const path_vertex &from = chunks.boxed_vertices > 0 ? chunks.last_boxed : vertices[0];
            box = {from.x, from.y, from.x, from.y};
        }
        const auto count =
            std::min(static_cast<std::size_t>(chunks.chunk_vertices - within), vertices.size());
        box = box_of(vertices.first(count), box);
        chunks.last_boxed = vertices[count - 1];
        chunks.boxed_vertices += static_cast<std::int32_t>(count);
        vertices = vertices.subspan(count);
    }
}

} // namespace vimbo
