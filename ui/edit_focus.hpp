// Which of the window's edit boxes has the focus. Nuklear knows them by their place
// in the layout, and takes the focus away at a press on anything else.
#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// True when the edit box that comes next in the layout has the focus.
bool has_focus(const nk_context *context);

/// Gives the edit box that comes next in the layout the focus when it is pressed.
/// Nuklear would do so by itself, but clear its cursor, selection and place.
void focus_when_pressed(nk_context *context, const struct nk_rect &bounds);

/// nk_edit_buffer for a box within `bounds` that keeps the focus until another one
/// takes it: whatever is pressed beside it, and also when boxes come or go elsewhere.
void edit_keeping_focus(nk_context *context, nk_flags flags, nk_text_edit &edit,
                        const struct nk_rect &bounds);

} // namespace vimbo
