// The mosaic's picture, kept from frame to frame and drawn again only when it
// changes. It is drawn in slices: what does not fit into a frame's time goes on
// between frames, and until it is whole the picture before it stands in, moved
// and scaled. What stands in the end is, to the pixel, what one direct draw gives.
#pragma once

#include "mosaic/mosaic.hpp"
#include "render/offscreen.hpp"
#include "render/path_buffer.hpp"

#include <cstdint>

namespace vimbo
{

/// A rectangle in GL's window coordinates, origin bottom left, in pixels.
struct picture_area {
    GLint x;
    GLint y;
    GLsizei width;
    GLsizei height;
};

/// Has what is drawn from here on fill the area, and stay within it, until
/// end_area.
void begin_area(const picture_area &area);
void end_area();

/// What a picture shows of which mosaic, and where in a window of which size.
struct picture_view {
    path_matrix matrix;
    picture_area area;
    GLsizei window_width;
    GLsizei window_height;
    std::uint32_t mosaic_generation;
};

/// A picture that is being drawn, or whole. It has the window's size, so that a
/// path covers the same pixels here and there.
struct picture_layer {
    offscreen target;
    picture_view view;
    std::int32_t drawn; // vertices of the mosaic
};

/// All zero: nothing kept. Main thread only.
struct kept_picture {
    picture_layer shown;
    picture_layer next; // takes the place of `shown` once it is whole
    picture_view wanted;
    std::int32_t wanted_vertices;
    std::int32_t slice_vertices; // of the next slice
    double vertices_per_second;  // of the last timed slice; 0 before the first

    /// Of the slices that are drawn without a frame between them: the end of the
    /// last one, null before the first, their vertices, and when they began, in
    /// seconds.
    GLsync last_slice;
    std::int64_t batch_vertices;
    double batch_start;
};

/// The mosaic and the program it is drawn with.
struct picture_source {
    GLuint program;
    const mosaic_state &mosaic;
};

/// Wants this view with the path's first `vertices`, and draws at it as long as a
/// frame may take, unless that is known not to be enough. False when the driver
/// makes no pictures beside the window: draw directly then.
bool want_picture(kept_picture &kept, const picture_source &source, const picture_view &view,
                  std::int32_t vertices);

/// True when what is wanted is not whole yet.
bool is_unfinished(const kept_picture &kept);

/// Draws one slice more, a few milliseconds' work.
void draw_slice(kept_picture &kept, const picture_source &source);

/// Puts the wanted picture, or what stands in for it, into the window.
void show_picture(const kept_picture &kept);

} // namespace vimbo
