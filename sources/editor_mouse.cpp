#include "sources/editor_mouse.hpp"

#include "sources/editor_keys.hpp"
#include "ui/takes_input.hpp"
#include "ui/utf8.hpp"
#include "ui/wheel.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vimbo
{

namespace
{

bool is_shift_down(const nk_context *context)
{
    return context->input.keyboard.keys[NK_KEY_SHIFT].down != 0;
}

// The scrollbar is there only when there is something to scroll.
bool is_on_text(const nk_text_edit &edit, const editor_view &view, struct nk_vec2 point)
{
    const struct nk_rect &bounds = view.bounds;
    if (!NK_INBOX(point.x, point.y, bounds.x, bounds.y, bounds.w, bounds.h))
        return false;
    return point.x < view.scrollbar_left || !is_scrollable(edit, view);
}

text_range range_at(const nk_text_edit &edit, const editor_view &view, const nk_user_font &font,
                    struct nk_vec2 point, int presses)
{
    const struct nk_rect &area = view.area;
    const struct nk_vec2 nearest =
        nk_vec2(std::clamp(point.x, area.x, area.x + std::max(area.w, 0.0F)),
                std::clamp(point.y, area.y, area.y + std::max(area.h - 1, 0.0F)));
    const std::size_t at = byte_at_point(edit, view, font, nearest, presses == 1);
    if (presses == 1)
        return {at, at};
    return presses == 2 ? word_at(edited_text(edit), at) : line_at(edited_text(edit), at);
}

// Selects from the anchor to the range, both included; the cursor goes to the end
// that is not the anchor's.
void select_to(nk_text_edit &edit, const text_range &anchor, const text_range &range)
{
    const std::string_view text = edited_text(edit);
    const bool backward = range.first < anchor.first;
    const std::size_t start = backward ? anchor.last : anchor.first;
    const std::size_t end = backward ? range.first : std::max(anchor.last, range.last);
    edit.select_start = character_count(text.substr(0, start));
    edit.select_end = character_count(text.substr(0, end));
    edit.cursor = edit.select_end;
    edit.has_preferred_x = 0;
}

void press(nk_context *context, nk_text_edit &edit, const editor_view &view, editor_mouse &mouse)
{
    const nk_input &input = context->input;
    mouse.dragging = is_on_text(edit, view, input.mouse.pos);
    if (!mouse.dragging) {
        mouse.presses = 0;
        return;
    }
    const bool again = nk_input_is_mouse_pressed(&input, NK_BUTTON_DOUBLE) != 0;
    const bool extends = is_shift_down(context);
    mouse.presses = again && !extends ? mouse.presses % 3 + 1 : 1;
    const text_range range =
        range_at(edit, view, *context->style.font, input.mouse.pos, mouse.presses);
    mouse.anchor = range;
    if (extends) {
        const bool selected = edit.select_start != edit.select_end;
        const std::size_t at =
            character_offset(edited_text(edit), selected ? edit.select_start : edit.cursor);
        mouse.anchor = {at, at};
    }
    select_to(edit, mouse.anchor, range);
}

// Pixels to scroll in a time, the faster the further the pointer is beyond an edge.
float drag_scroll(float at, float least, float most, float row_height, float seconds)
{
    constexpr float rows_per_second = 4;
    constexpr float per_second = 12; // and pixel
    const float beyond = at - std::clamp(at, least, std::max(least, most));
    if (beyond == 0)
        return 0;
    return std::copysign(rows_per_second * row_height, beyond) * seconds +
           per_second * beyond * seconds;
}

// True when it scrolled.
bool scroll_beyond_edge(const nk_context *context, nk_text_edit &edit, const editor_view &view,
                        float seconds)
{
    const struct nk_vec2 at = context->input.mouse.pos;
    const struct nk_rect &area = view.area;
    return scroll_by(edit, view, *context->style.font,
                     nk_vec2(drag_scroll(at.x, area.x, area.x + area.w, view.row_height, seconds),
                             drag_scroll(at.y, area.y, area.y + area.h, view.row_height, seconds)));
}

void drag(const nk_context *context, nk_text_edit &edit, const editor_view &view,
          const editor_mouse &mouse)
{
    select_to(edit, mouse.anchor,
              range_at(edit, view, *context->style.font, context->input.mouse.pos, mouse.presses));
}

} // namespace

void follow_mouse(nk_context *context, nk_text_edit &edit, const editor_view &view,
                  editor_mouse &mouse, float seconds)
{
    if (!takes_input(context)) {
        mouse.dragging = false;
        return;
    }
    const nk_input &input = context->input;
    bool scrolled = scroll_by(edit, view, *context->style.font,
                              wheel_scroll(context, view.bounds, view.row_height));
    if (nk_input_is_mouse_pressed(&input, NK_BUTTON_LEFT) != 0) {
        press(context, edit, view, mouse);
        // The toolkit clears cursor, selection and place when a press activates an
        // edit; one that has the focus before it sees the press keeps them.
        if (NK_INBOX(input.mouse.pos.x, input.mouse.pos.y, view.bounds.x, view.bounds.y,
                     view.bounds.w, view.bounds.h))
            nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
    } else if (mouse.dragging && nk_input_is_mouse_down(&input, NK_BUTTON_LEFT) != 0) {
        scrolled |= scroll_beyond_edge(context, edit, view, seconds);
        // Keys may move the cursor while the pointer stands still.
        if (scrolled || input.mouse.delta.x != 0 || input.mouse.delta.y != 0)
            drag(context, edit, view, mouse);
    } else {
        mouse.dragging = false;
    }
}

void lay_out_edit(nk_context *context, nk_text_edit &edit, const editor_view &view,
                  const editor_mouse &mouse)
{
    nk_mouse &seen = context->input.mouse;
    nk_mouse_button &left = seen.buttons[NK_BUTTON_LEFT];
    const struct nk_vec2 position = seen.pos;
    const auto down = left.down;
    const auto clicked = left.clicked;
    // It would select a word beside the cursor, wherever the pointer is.
    nk_mouse_button &right = seen.buttons[NK_BUTTON_RIGHT];
    const auto right_clicked = std::exchange(right.clicked, 0U);
    const bool pressed_elsewhere =
        nk_input_has_mouse_click_in_rect(&context->input, NK_BUTTON_LEFT, view.bounds) == 0;
    if (mouse.dragging || pressed_elsewhere) {
        // A press elsewhere would take the focus away, or go on over the text.
        left.down = nk_false;
        left.clicked = 0;
    } else if (down != nk_false && clicked == 0) {
        // A press of the scrollbar that goes on over the text is no drag of a
        // selection.
        seen.pos.x = std::max(seen.pos.x, view.scrollbar_left);
    }
    nk_edit_buffer(context, NK_EDIT_BOX, &edit, nk_filter_default);
    seen.pos = position;
    left.down = down;
    left.clicked = clicked;
    right.clicked = right_clicked;
}

} // namespace vimbo
