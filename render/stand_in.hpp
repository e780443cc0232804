// Which part of an old picture stands in for a new one that is still being drawn,
// and where it goes: each axis by itself, without GL.
#pragma once

namespace vimbo
{

/// One axis of a view: position = scale * path + shift, in normalised device
/// units, which -1 to 1 fill `length` pixels from `start` on.
struct view_axis {
    double scale;
    double shift;
    int start;
    int length;
};

/// The part of the path that both views show, as first and last edge in pixels of
/// the old view, then of the new one.
struct shared_stretch {
    int from[2];
    int to[2];
    bool empty; // nothing is shared; the rest is then 0
};

/// What two views of one path share along an axis. Empty, too, for a scale or a
/// shift that is infinite or NaN.
shared_stretch share_axis(const view_axis &before, const view_axis &now);

/// True when the stretch has not the same length in both views.
bool is_scaled(const shared_stretch &stretch);

} // namespace vimbo
