#include "render/kept_picture.hpp"

#include "render/stand_in.hpp"
#include "ui/frame_state.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vimbo
{

namespace
{

static_assert(sizeof(picture_view) == sizeof(path_matrix) + sizeof(picture_area) + 12,
              "views are compared as bytes");

bool same_view(const picture_view &a, const picture_view &b)
{
    // As bytes, since NaN differs from itself.
    return std::memcmp(&a, &b, sizeof a) == 0; // NOLINT(bugprone-suspicious-memory-comparison)
}

pixel_edges edges_of(const picture_area &area)
{
    return {area.x, area.y, area.x + area.width, area.y + area.height};
}

// Where the picture lies in the layer.
picture_area area_in(const picture_layer &layer)
{
    picture_area area = layer.view.area;
    area.y = std::min(row_in(layer.target, area.y), row_in(layer.target, area.y + area.height));
    return area;
}

void begin_drawing(const picture_layer &layer)
{
    glBindFramebuffer(GL_FRAMEBUFFER, layer.target.framebuffer);
    if (layer.target.upside_down)
        turn_clip_origin(true);
    begin_area(area_in(layer));
}

void end_drawing(const picture_layer &layer)
{
    end_area();
    if (layer.target.upside_down)
        turn_clip_origin(false);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

bool restart(picture_layer &layer, const picture_view &view)
{
    if (!fit_offscreen(layer.target, view.window_width, view.window_height))
        return false;
    layer.target.upside_down = can_turn_clip_origin();
    layer.view = view;
    layer.drawn = 0;
    layer.begun = 0;
    fill_offscreen(layer.target, edges_of(area_in(layer)), picture_background);
    return true;
}

bool can_go_on(const picture_layer &layer, const kept_picture &kept)
{
    return layer.target.framebuffer != 0 && same_view(layer.view, kept.wanted) &&
           layer.begun <= kept.wanted_vertices;
}

// The layer that is on its way to what is wanted.
picture_layer &layer_under_way(kept_picture &kept)
{
    return can_go_on(kept.shown, kept) ? kept.shown : kept.next;
}

void forget_stand_in(kept_picture &kept)
{
    kept.stand_in_view = {};
}

bool begin_picture(kept_picture &kept)
{
    if (can_go_on(kept.shown, kept) || can_go_on(kept.next, kept))
        return true;
    // A mosaic that is gone must not stand in for the one that is there.
    const bool nothing_stands_in =
        kept.shown.target.framebuffer == 0 ||
        kept.shown.view.mosaic_generation != kept.wanted.mosaic_generation;
    kept.pass.under_way = false;
    if (nothing_stands_in)
        forget_stand_in(kept);
    return restart(nothing_stands_in ? kept.shown : kept.next, kept.wanted);
}

void finish_picture(kept_picture &kept)
{
    if (!can_go_on(kept.shown, kept) && can_go_on(kept.next, kept) &&
        kept.next.drawn == kept.wanted_vertices) {
        std::swap(kept.shown, kept.next);
        forget_stand_in(kept);
    }
}

void draw_in_order(kept_picture &kept, picture_layer &layer, const picture_parts &parts)
{
    const std::int32_t count = next_slice(kept.pace, kept.wanted_vertices - layer.drawn);
    const double start = pace_clock();
    begin_drawing(layer);
    // From the last vertex that is drawn: the first segment starts there.
    const std::int32_t first = std::max(layer.drawn - 1, 0);
    draw_path_range(parts.program, kept.wanted.matrix, parts.mosaic.mosaic_vao, first,
                    layer.drawn + count - first, mosaic_colours);
    end_drawing(layer);
    time_slice(kept.pace, count, start);
    layer.drawn += count;
    layer.begun = std::max(layer.begun, layer.drawn);
}

// Where the boxes are there already, a pass may well be shorter than a slice.
bool is_pass_wanted(const kept_picture &kept, const picture_layer &layer,
                    const picture_parts &parts)
{
    if (parts.program == 0 || !has_room(layer.view.area.width, layer.view.area.height))
        return false;
    const std::int32_t missing = kept.wanted_vertices - layer.drawn;
    return are_boxed(kept.chunks, parts.mosaic) ? exceeds_slice(kept.pace, missing)
                                                : exceeds_frame(kept.pace, missing);
}

void box_chunks(path_chunks &chunks, const mosaic_state &mosaic)
{
    fit_chunks(chunks, mosaic);
    const double start = pace_clock();
    while (!are_boxed(chunks, mosaic) && pace_clock() - start < slice_time)
        box_stretch(chunks, mosaic);
}

void draw_newest_first(kept_picture &kept, picture_layer &layer, const picture_parts &parts)
{
    const path_projection target =
        project(layer.view.matrix, area_in(layer), layer.target.upside_down, driver_grid());
    const double start = pace_clock();
    begin_drawing(layer);
    if (!kept.pass.under_way) {
        begin_newest_first(kept.pass, target, layer.drawn, kept.wanted_vertices);
        layer.begun = kept.wanted_vertices;
    }
    const std::int32_t most = next_slice(kept.pass_pace, INT32_MAX);
    std::int32_t drawn = 0;
    do
        drawn += draw_newest(kept.pass, target, kept.chunks, parts, most - drawn,
                             kept.pass_pace.vertices_per_second);
    while (kept.pass.under_way && drawn < most && pace_clock() - start < slice_time);
    end_drawing(layer);
    time_slice(kept.pass_pace, drawn, start);
    if (kept.pass.under_way)
        return;
    layer.drawn = layer.begun;
    // In order they are drawn as fast at least: one slow slice is not for ever.
    kept.pace.vertices_per_second =
        std::max(kept.pace.vertices_per_second, kept.pass_pace.vertices_per_second);
}

view_axis horizontal_axis(const picture_view &view)
{
    return {view.matrix.element[0], view.matrix.element[12], view.area.x, view.area.width};
}

view_axis vertical_axis(const picture_view &view)
{
    return {view.matrix.element[5], view.matrix.element[13], view.area.y, view.area.height};
}

pixel_edges whole_picture(const offscreen &picture)
{
    return {0, 0, picture.width, picture.height};
}

void copy_stretch(const picture_layer &layer, const shared_stretch &x, const shared_stretch &y)
{
    // What is only moved can be copied as it is.
    const GLenum filter = is_scaled(x) || is_scaled(y) ? GL_LINEAR : GL_NEAREST;
    copy_to_window(layer.target, {x.from[0], y.from[0], x.from[1], y.from[1]},
                   {x.to[0], y.to[0], x.to[1], y.to[1]}, filter);
}

// The picture before, moved and scaled to the wanted view. True when it was scaled.
bool show_stand_in(const kept_picture &kept)
{
    clear_picture();
    const shared_stretch x =
        share_axis(horizontal_axis(kept.shown.view), horizontal_axis(kept.wanted));
    const shared_stretch y = share_axis(vertical_axis(kept.shown.view), vertical_axis(kept.wanted));
    if (x.empty || y.empty)
        return false;
    copy_stretch(kept.shown, x, y);
    return is_scaled(x) || is_scaled(y);
}

// For the frames that follow: a software renderer copies a picture in a fraction of the
// time that scaling it takes.
void keep_stand_in(kept_picture &kept)
{
    const picture_area &area = kept.wanted.area;
    if (!fit_offscreen(kept.stand_in, area.width, area.height))
        return;
    copy_from_window(kept.stand_in, edges_of(area), whole_picture(kept.stand_in));
    kept.stand_in_view = kept.wanted;
}

} // namespace

bool want_picture(kept_picture &kept, const picture_view &view, std::int32_t vertices)
{
    if (!same_view(kept.wanted, view))
        kept.pass.under_way = false;
    kept.wanted = view;
    kept.wanted_vertices = vertices;
    end_batch(kept.pace);
    end_batch(kept.pass_pace);
    if (!begin_picture(kept)) {
        // Without one of the layers the other is of no use, and nothing of it is
        // to be drawn between frames.
        delete_offscreen(kept.shown.target);
        delete_offscreen(kept.next.target);
        delete_offscreen(kept.stand_in);
        return false;
    }
    return true;
}

void draw_within_frame(kept_picture &kept, const picture_parts &parts)
{
    const bool too_much =
        exceeds_frame(kept.pace, kept.wanted_vertices - layer_under_way(kept).drawn);
    const bool spares = !kept.pass.under_way && are_boxed(kept.chunks, parts.mosaic);
    if (too_much && !spares)
        return;
    const double start = pace_clock();
    const auto draw_until = [&](double time) {
        while (is_unfinished(kept) && pace_clock() - start < time)
            draw_slice(kept, parts);
    };
    // A pass that will be through within the frame is shown at once; others go on later.
    if (too_much) {
        draw_until(frame_time / 2);
        if (!kept.pass.under_way || !is_half_through(kept.pass, kept.chunks))
            return;
    }
    draw_until(frame_time);
}

bool is_unfinished(const kept_picture &kept)
{
    const bool stands =
        same_view(kept.shown.view, kept.wanted) && kept.shown.drawn == kept.wanted_vertices;
    return kept.shown.target.framebuffer != 0 && !stands;
}

void draw_slice(kept_picture &kept, const picture_parts &parts)
{
    picture_layer &layer = layer_under_way(kept);
    if (&layer == &kept.shown)
        forget_stand_in(kept);
    if (!kept.pass.under_way && !is_pass_wanted(kept, layer, parts))
        draw_in_order(kept, layer, parts);
    else if (!kept.pass.under_way && !are_boxed(kept.chunks, parts.mosaic))
        box_chunks(kept.chunks, parts.mosaic);
    else
        draw_newest_first(kept, layer, parts);
    finish_picture(kept);
}

void show_picture(kept_picture &kept)
{
    bool scaled = false;
    begin_area(kept.wanted.area);
    const pixel_edges area = edges_of(kept.wanted.area);
    if (same_view(kept.shown.view, kept.wanted))
        copy_to_window(kept.shown.target, area, area, GL_NEAREST);
    else if (same_view(kept.stand_in_view, kept.wanted))
        copy_to_window(kept.stand_in, whole_picture(kept.stand_in), area, GL_NEAREST);
    else
        scaled = show_stand_in(kept);
    end_area();
    if (scaled)
        keep_stand_in(kept);
}

} // namespace vimbo
