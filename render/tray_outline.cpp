#include "render/tray_outline.hpp"

#include "mosaic/path_attributes.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace vimbo
{

namespace
{

// Truncated toward zero. The command line takes any 32-bit extent, so what is
// beyond 32 bits wraps around.
length_unit truncated(double length)
{
    return static_cast<length_unit>(static_cast<std::int64_t>(length));
}

path_vertex outline_vertex(double x, double y)
{
    return {truncated(x), truncated(y) & ~1};
}

} // namespace

void compute_tray_outline(const tray_extent &extent,
                          std::span<path_vertex, tray_outline_vertices> vertices)
{
    const length_unit half_width = extent.width / 2; // in whole units
    const length_unit half_height = extent.height / 2;
    const double right = half_width;
    const double top = half_height;
    for (std::size_t k = 0; k < vertices_per_corner; ++k) {
        const double angle = static_cast<double>(k) * (1.0 / 16.0) * (std::numbers::pi / 2.0);
        const double c = extent.corner_radius * std::cos(angle);
        const double s = extent.corner_radius * std::sin(angle);
        vertices[k] = outline_vertex(right + c, top + s);
        vertices[k + vertices_per_corner] = outline_vertex(-right - s, top + c);
        vertices[k + 2 * vertices_per_corner] = outline_vertex(-right - c, -top - s);
        vertices[k + 3 * vertices_per_corner] = outline_vertex(right + s, -top - c);
    }
    vertices[tray_outline_vertices - 1] = vertices[0];
}

path_buffer build_tray_outline(length_unit width, length_unit height, length_unit radius)
{
    path_buffer outline = {0, 0, tray_outline_vertices};
    glGenVertexArrays(1, &outline.vertex_array);
    glBindVertexArray(outline.vertex_array);
    glGenBuffers(1, &outline.buffer);
    glBindBuffer(GL_ARRAY_BUFFER, outline.buffer);
    glBufferData(GL_ARRAY_BUFFER, tray_outline_vertices * sizeof(path_vertex), nullptr,
                 GL_STATIC_DRAW);
    set_path_vertex_attributes();
    auto *mapped = static_cast<path_vertex *>(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY));
    if (mapped != nullptr) {
        compute_tray_outline({width, height, radius}, std::span<path_vertex, tray_outline_vertices>(
                                                          mapped, tray_outline_vertices));
        glUnmapBuffer(GL_ARRAY_BUFFER);
    }
    glBindVertexArray(0);
    return outline;
}

} // namespace vimbo
