#include "render/stand_in.hpp"

#include <algorithm>
#include <cmath>

namespace vimbo
{

namespace
{

int pixel_of(const view_axis &axis, double at)
{
    return axis.start + static_cast<int>(std::lround((at + 1) / 2 * axis.length));
}

} // namespace

shared_stretch share_axis(const view_axis &before, const view_axis &now)
{
    const double ratio = now.scale / before.scale;
    const double first = std::clamp((-1 - now.shift) / ratio + before.shift, -1.0, 1.0);
    const double last = std::clamp((1 - now.shift) / ratio + before.shift, -1.0, 1.0);
    // False for NaN as well, which zooms to 0 or infinity give.
    if (!(first < last) || !std::isfinite(ratio))
        return {{}, {}, true};
    const auto moved = [&](double at) { return ratio * (at - before.shift) + now.shift; };
    return {{pixel_of(before, first), pixel_of(before, last)},
            {pixel_of(now, moved(first)), pixel_of(now, moved(last))},
            false};
}

bool is_scaled(const shared_stretch &stretch)
{
    return stretch.from[1] - stretch.from[0] != stretch.to[1] - stretch.to[0];
}

} // namespace vimbo
