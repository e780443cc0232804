#pragma once

#include "ui/frame_state.hpp"

namespace vimbo
{

/// nk_tooltip, which opens right of and below the pointer, moved so far to the left or
/// above the pointer that it lies in the window.
void tooltip_in_window(frame_state &frame, const char *text);

} // namespace vimbo
