#include "render/preview_picture.hpp"

namespace vimbo
{

namespace
{

// A rectangle in GL's window coordinates, origin bottom left.
struct picture_area {
    GLint x;
    GLint y;
    GLsizei width;
    GLsizei height;
};

picture_area area_of(const struct nk_rect &rectangle, std::int32_t window_height)
{
    const float bottom = static_cast<float>(window_height) - rectangle.y - rectangle.h;
    return {static_cast<GLint>(rectangle.x), static_cast<GLint>(bottom),
            static_cast<GLsizei>(rectangle.w), static_cast<GLsizei>(rectangle.h)};
}

} // namespace

path_matrix preview_matrix(const preview_state &preview, std::int32_t window_width,
                           std::int32_t window_height)
{
    constexpr float scale = 64;
    const float aspect = static_cast<float>(window_height) / static_cast<float>(window_width);
    path_matrix matrix = {};
    matrix.element[0] = scale * preview.zoom * aspect;
    matrix.element[5] = scale * preview.zoom;
    matrix.element[10] = 1;
    matrix.element[12] = preview.pan_x;
    matrix.element[13] = preview.pan_y;
    matrix.element[15] = 1;
    return matrix;
}

std::int32_t replayed_vertices(std::int32_t vertex_count, std::size_t replay_position)
{
    // More points than 31 bits count arrive as a negative number.
    if (vertex_count < 0)
        return 0;
    const auto vertices = static_cast<std::uint64_t>(vertex_count);
    return static_cast<std::int32_t>(vertices * replay_position / replay_end);
}

void draw_preview(const frame_state &frame, const preview_state &preview, GLuint program,
                  const mosaic_state &mosaic, const path_buffer &outline)
{
    const picture_area area = area_of(preview.rectangle, frame.window_height);
    if (area.width <= 0 || area.height <= 0)
        return;
    glViewport(area.x, area.y, area.width, area.height);
    glScissor(area.x, area.y, area.width, area.height);
    glEnable(GL_SCISSOR_TEST);
    glDisable(GL_BLEND);
    glClearColor(0.432F, 0.557F, 0.745F, 0.0F);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const path_matrix matrix = preview_matrix(preview, frame.window_width, frame.window_height);
    draw_path_buffer(program, matrix, mosaic.mosaic_vao,
                     replayed_vertices(mosaic.mosaic_vertex_count, preview.replay_position),
                     mosaic_colours);
    draw_path_buffer(program, matrix, outline.vertex_array, outline.vertex_count, outline_colours);
    glDisable(GL_SCISSOR_TEST);
}

} // namespace vimbo
