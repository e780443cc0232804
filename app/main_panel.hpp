#pragma once

#include "app/app_state.hpp"

namespace vimbo
{

/// Once, before the first frame: nothing open, the tray's first mosaic chosen.
void initialise_panels(app_state &app);

/// The start of a frame's layout: what the last frame asked for is forgotten.
void reset_frame_flags(frame_state &frame);

/// The whole window, laid out and acted upon in one pass. Needs Nuklear's
/// context, but neither a window nor GL.
void main_panel(app_state &app);

} // namespace vimbo
