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

bool has_focus(const nk_context *context)
{
    const nk_edit_state &edits = context->current->edit;
    return edits.active != 0 && edits.name == edits.seq;
}

void focus_when_pressed(nk_context *context, const struct nk_rect &bounds)
{
    if (takes_input(context) && nk_input_is_mouse_pressed(&context->input, NK_BUTTON_LEFT) != 0 &&
        nk_input_is_mouse_hovering_rect(&context->input, bounds) != 0)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
}

void edit_keeping_focus(nk_context *context, nk_flags flags, nk_text_edit &edit,
                        const struct nk_rect &bounds)
{
    const nk_window &window = *context->current;
    if (is_property_typed(window))
        nk_edit_unfocus(context);
    else if (edit.active != 0 && window.edit.active == 0)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);

    nk_mouse_button &left = context->input.mouse.buttons[NK_BUTTON_LEFT];
    const nk_mouse_button pressed = left;
    const bool pressed_elsewhere =
        nk_input_has_mouse_click_in_rect(&context->input, NK_BUTTON_LEFT, bounds) == 0;
    if (pressed_elsewhere) {
        left.clicked = 0;
        left.down = nk_false; // dragged over the box it would select
    }
    nk_edit_buffer(context, flags, &edit, nk_filter_default);
    left = pressed;
}

} // namespace vimbo
