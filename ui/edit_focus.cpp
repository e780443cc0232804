#include "ui/edit_focus.hpp"

#include "ui/takes_input.hpp"

namespace vimbo
{

namespace
{

// A number that is typed into a property: its text box is none of the window's.
bool is_property_typed(const nk_window &window)
{
    constexpr int typed = 1; // NK_PROPERTY_EDIT, which nuklear.h keeps to itself
    return window.property.active != 0 && window.property.state == typed;
}

} // namespace

bool takes_keys(const nk_context *context)
{
    const nk_edit_state &edits = context->current->edit;
    return takes_input(context) && edits.active != 0 && edits.name == edits.seq;
}

void focus_when_pressed(nk_context *context, const struct nk_rect &bounds)
{
    if (takes_input(context) && nk_input_is_mouse_pressed(&context->input, NK_BUTTON_LEFT) != 0 &&
        nk_input_is_mouse_hovering_rect(&context->input, bounds) != 0)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
}

void keep_focus(nk_context *context, const nk_text_edit &edit)
{
    const nk_window &window = *context->current;
    if (is_property_typed(window))
        nk_edit_unfocus(context);
    else if (edit.active != 0 && window.edit.active == 0)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
}

} // namespace vimbo
