#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// How far this layout's turns of the wheel scroll what lies in `bounds`, in pixels
/// to the right and down: three rows a notch, sideways with Shift. Zero unless the
/// pointer is over it. The turns stay there for others.
struct nk_vec2 wheel_scroll(const nk_context *context, const struct nk_rect &bounds,
                            float row_height);

} // namespace vimbo
