#include "render/preview_picture.hpp"

namespace vimbo
{

namespace
{

picture_area area_of(const frame_state &frame, const struct nk_rect &rectangle)
{
    const struct nk_rect pixels = in_pixels(rectangle, frame.ratio);
    const auto height = static_cast<float>(in_pixels(frame.window_height, frame.ratio.y));
    return {static_cast<GLint>(pixels.x), static_cast<GLint>(height - pixels.y - pixels.h),
            static_cast<GLsizei>(pixels.w), static_cast<GLsizei>(pixels.h)};
}

bool is_empty(const picture_area &area)
{
    return area.width <= 0 || area.height <= 0;
}

picture_view view_of(const frame_state &frame, const preview_state &preview,
                     const mosaic_state &mosaic)
{
    return {preview_matrix(preview, frame.window_width, frame.window_height),
            area_of(frame, preview.rectangle), in_pixels(frame.window_width, frame.ratio.x),
            in_pixels(frame.window_height, frame.ratio.y), mosaic.mosaic_generation};
}

void draw_outline(const picture_view &view, const picture_parts &parts)
{
    begin_area(view.area);
    draw_path_buffer(parts.program, view.matrix, parts.outline.vertex_array,
                     parts.outline.vertex_count, outline_colours);
    end_area();
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

void draw_preview(const frame_state &frame, const preview_state &preview,
                  const picture_parts &parts, kept_picture &kept)
{
    const picture_view view = view_of(frame, preview, parts.mosaic);
    if (is_empty(view.area))
        return;
    const std::int32_t vertices =
        replayed_vertices(parts.mosaic.mosaic_vertex_count, preview.replay_position);
    if (!want_picture(kept, view, vertices)) {
        draw_preview_directly(frame, preview, parts);
        return;
    }
    draw_within_frame(kept, parts);
    show_picture(kept);
    draw_outline(view, parts);
}

void draw_preview_directly(const frame_state &frame, const preview_state &preview,
                           const picture_parts &parts)
{
    const picture_view view = view_of(frame, preview, parts.mosaic);
    if (is_empty(view.area))
        return;
    begin_area(view.area);
    clear_picture();
    draw_path_buffer(parts.program, view.matrix, parts.mosaic.mosaic_vao,
                     replayed_vertices(parts.mosaic.mosaic_vertex_count, preview.replay_position),
                     mosaic_colours);
    end_area();
    draw_outline(view, parts);
}

} // namespace vimbo
