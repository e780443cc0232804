// The mosaic's picture, kept from frame to frame and drawn again only when it
// changes. It is drawn in slices: what does not fit into a frame's time goes on
// between frames, and until it is whole the picture before it stands in, moved
// and scaled. What stands in the end is, to the pixel, what one direct draw gives.
//
//     shown = wanted, whole ---- more vertices ---> shown grows in place
//          |        ^                               (a step of a replay)
//     another view  |
//          v        | swapped, once next is whole
//     shown stands in for wanted, next = wanted grows
//          |        ^
//     yet another view: next starts anew
//
// With nothing to stand in, as at first or after a load, shown itself starts anew.
//
// What fits into a frame is drawn in the path's order. What does not, which seldom
// happens with a graphics card, is drawn newest first once its chunks have their
// boxes; they are read in slices, too.
#pragma once

#include "render/newest_first.hpp"
#include "render/offscreen.hpp"
#include "render/path_buffer.hpp"
#include "render/path_chunks.hpp"
#include "render/picture_area.hpp"
#include "render/picture_parts.hpp"
#include "render/slice_pace.hpp"

#include <cstdint>

namespace vimbo
{

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
    std::int32_t drawn; // vertices of the mosaic, from its start
    std::int32_t begun; // so many at most have left anything on it
};

/// All zero: nothing kept. It is too large for a thread's stack. Main thread only.
struct kept_picture {
    picture_layer shown;
    picture_layer next; // takes the place of `shown` once it is whole
    picture_view wanted;
    std::int32_t wanted_vertices;
    slice_pace pace;

    offscreen stand_in; // `shown` as it was scaled last, to what was wanted then
    picture_view stand_in_view;

    path_chunks chunks; // of the mosaic, once a picture of it takes too long
    newest_first pass;  // over the layer that is on its way
    slice_pace pass_pace;
};

/// Wants this view with the path's first `vertices`. False when the driver makes
/// no pictures beside the window: draw directly then.
bool want_picture(kept_picture &kept, const picture_view &view, std::int32_t vertices);

/// Draws at what is wanted as long as a frame may take, unless that is known not
/// to be enough.
void draw_within_frame(kept_picture &kept, const picture_parts &parts);

/// True when what is wanted is not whole yet.
bool is_unfinished(const kept_picture &kept);

/// Draws one slice more, a few milliseconds' work.
void draw_slice(kept_picture &kept, const picture_parts &parts);

/// Puts the wanted picture, or what stands in for it, into the window.
void show_picture(kept_picture &kept);

} // namespace vimbo
