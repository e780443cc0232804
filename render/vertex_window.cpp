#include "render/vertex_window.hpp"

#include <GL/glew.h>

#include <algorithm>
#include <cstddef>

namespace vimbo
{

namespace
{

GLintptr offset_of(std::int32_t vertex)
{
    return static_cast<GLintptr>(vertex) * static_cast<GLintptr>(sizeof(path_vertex));
}

} // namespace

void read_vertices(const mosaic_state &mosaic, std::int32_t first, std::span<path_vertex> vertices)
{
    glBindBuffer(GL_COPY_READ_BUFFER, mosaic.mosaic_vbo);
    glGetBufferSubData(GL_COPY_READ_BUFFER, offset_of(first),
                       static_cast<GLsizeiptr>(vertices.size_bytes()), vertices.data());
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
}

const path_vertex *map_vertices(const mosaic_state &mosaic, std::int32_t first, std::size_t count)
{
    glBindBuffer(GL_COPY_READ_BUFFER, mosaic.mosaic_vbo);
    return static_cast<const path_vertex *>(
        glMapBufferRange(GL_COPY_READ_BUFFER, offset_of(first),
                         static_cast<GLsizeiptr>(count * sizeof(path_vertex)), GL_MAP_READ_BIT));
}

void unmap_vertices()
{
    glUnmapBuffer(GL_COPY_READ_BUFFER);
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
}

void forget_vertices(vertex_window &window)
{
    window.first = 0;
    window.end = 0;
}

std::span<const path_vertex> vertices_between(vertex_window &window, const mosaic_state &mosaic,
                                              std::int32_t first, std::int32_t end)
{
    first = std::max(first, end - window_vertices);
    if (first < window.first || end > window.end) {
        // Where one stretch after the other is asked for, those before it will be, too.
        const bool goes_on = end - 1 == window.first || end == window.first;
        window.first = goes_on ? std::max(end - window_vertices, 0) : first;
        window.end = end;
        read_vertices(
            mosaic, window.first,
            std::span(window.vertices).first(static_cast<std::size_t>(end - window.first)));
    }
    return std::span<const path_vertex>(window.vertices)
        .subspan(static_cast<std::size_t>(first - window.first),
                 static_cast<std::size_t>(end - first));
}

} // namespace vimbo
