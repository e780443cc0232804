// A place in a window or picture.
#pragma once

namespace rig
{

/// In pixels, from the upper left corner.
struct point {
    int x, y;
};

} // namespace rig
