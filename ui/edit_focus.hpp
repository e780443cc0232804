// Which of the window's edit boxes has the focus. Nuklear knows them by their place
// in the layout, takes the focus away at a press on anything else, and drops it where
// boxes come or go.
#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// True when the edit box that comes next in the layout has the focus and takes keys:
/// not while a list is open.
bool takes_keys(const nk_context *context);

/// Gives the edit box that comes next in the layout the focus when it is pressed.
/// Nuklear would do so by itself, but clear its cursor, selection and place.
void focus_when_pressed(nk_context *context, const struct nk_rect &bounds);

/// To be called before `edit` is laid out: it keeps the focus that it had until
/// another box takes it, or a property in which a number is typed.
void keep_focus(nk_context *context, const nk_text_edit &edit);

} // namespace vimbo
