#include "ui/input_queue.hpp"

#include "ui/nuklear.hpp"

namespace vimbo
{

namespace
{

// What an edit box finds in one layout it acts upon in this order, whatever order
// it came in: a key, then text, then Enter, then copy or cut, then paste, then the
// tab. So a layout takes events only as long as their phases rise, and one key of
// each. It also knows the pointer at one place, and Shift and Control in one state: a
// layout takes one press or release of a button, none beside keys or text, and none
// behind a motion. So what the pointer moved before a press is no drag yet, and what
// it moved before the release still is.
enum class phase { nothing, key, text, enter, cut_or_copy, paste, tab };

struct batch {
    phase reached = phase::nothing;
    bool pointer_used = false; // a button or the wheel: the pointer has to stay
    bool pointer_moved = false;
    bool button_used = false;
    bool modifiers_used = false; // Shift and Control have to stay
    int text_bytes = 0;
};

phase phase_of(nk_keys key)
{
    switch (key) {
    case NK_KEY_ENTER:
        return phase::enter;
    case NK_KEY_COPY:
    case NK_KEY_CUT:
        return phase::cut_or_copy;
    case NK_KEY_PASTE:
        return phase::paste;
    case NK_KEY_TAB:
        return phase::tab;
    default:
        return phase::key;
    }
}

bool keyboard_used(const batch &taken)
{
    return taken.reached != phase::nothing;
}

void take_motion(nk_context *context, const input_event &event)
{
    nk_input_motion(context, static_cast<int>(event.x), static_cast<int>(event.y));
}

// False when this layout has taken an event with others.
bool take_modifiers(batch &taken, nk_context *context, const input_event &event)
{
    nk_key &shift = context->input.keyboard.keys[NK_KEY_SHIFT];
    nk_key &control = context->input.keyboard.keys[NK_KEY_CTRL];
    const bool same =
        (shift.down != nk_false) == event.shift && (control.down != nk_false) == event.control;
    if (taken.modifiers_used && !same)
        return false;
    shift.down = event.shift ? nk_true : nk_false;
    control.down = event.control ? nk_true : nk_false;
    taken.modifiers_used = true;
    return true;
}

bool take_button(batch &taken, nk_context *context, const input_event &event)
{
    if (taken.pointer_moved || taken.button_used || keyboard_used(taken) ||
        !take_modifiers(taken, context, event))
        return false;
    take_motion(context, event);
    const auto x = static_cast<int>(event.x);
    const auto y = static_cast<int>(event.y);
    nk_input_button(context, static_cast<nk_buttons>(event.code), x, y,
                    event.down ? nk_true : nk_false);
    nk_input_button(context, NK_BUTTON_DOUBLE, x, y, event.again ? nk_true : nk_false);
    taken.button_used = true;
    taken.pointer_used = true;
    return true;
}

bool take_scroll(batch &taken, nk_context *context, const input_event &event)
{
    if (!take_modifiers(taken, context, event))
        return false;
    nk_input_scroll(context, nk_vec2(event.x, event.y));
    taken.pointer_used = true;
    return true;
}

bool take_character(batch &taken, nk_context *context, const input_event &event)
{
    nk_glyph glyph = {};
    const int bytes = nk_utf_encode(event.code, glyph, NK_UTF_SIZE);
    if (taken.button_used || taken.reached > phase::text ||
        taken.text_bytes + bytes >= NK_INPUT_MAX)
        return false;
    nk_input_unicode(context, event.code);
    taken.text_bytes += bytes;
    taken.reached = phase::text;
    return true;
}

void press(nk_context *context, nk_keys key)
{
    nk_key &state = context->input.keyboard.keys[key];
    state.down = nk_true;
    state.clicked = 1;
}

bool take_key(batch &taken, nk_context *context, const input_event &event)
{
    const auto key = static_cast<nk_keys>(event.code);
    if (taken.button_used || taken.reached >= phase_of(key) ||
        !take_modifiers(taken, context, event))
        return false;
    press(context, key);
    // Home and End, with Control or without, also go to the ends of what scrolls.
    if (key == NK_KEY_TEXT_START || key == NK_KEY_TEXT_LINE_START)
        press(context, NK_KEY_SCROLL_START);
    if (key == NK_KEY_TEXT_END || key == NK_KEY_TEXT_LINE_END)
        press(context, NK_KEY_SCROLL_END);
    taken.reached = phase_of(key);
    return true;
}

// False when the event has to wait for the next layout.
bool take_event(batch &taken, nk_context *context, const input_event &event)
{
    switch (event.kind) {
    case input_kind::motion:
        if (taken.pointer_used)
            return false;
        take_motion(context, event);
        taken.pointer_moved = true;
        return true;
    case input_kind::button:
        return take_button(taken, context, event);
    case input_kind::scroll:
        return take_scroll(taken, context, event);
    case input_kind::character:
        return take_character(taken, context, event);
    case input_kind::key:
        return take_key(taken, context, event);
    }
    return true;
}

} // namespace

void queue_input(input_queue &queue, const input_event &event)
{
    if (event.kind == input_kind::motion && queue.count > 0) {
        input_event &last = queue.events[(queue.first + queue.count - 1) % input_capacity];
        if (last.kind == input_kind::motion) {
            last = event;
            return;
        }
    }
    if (queue.count < input_capacity)
        queue.events[(queue.first + queue.count++) % input_capacity] = event;
}

bool has_input(const input_queue &queue)
{
    return queue.count > 0;
}

void take_input(input_queue &queue, nk_context *context)
{
    nk_input_begin(context);
    for (nk_key &key : context->input.keyboard.keys)
        key.down = nk_false;
    batch taken;
    while (queue.count > 0 && take_event(taken, context, queue.events[queue.first])) {
        queue.first = (queue.first + 1) % input_capacity;
        --queue.count;
    }
    nk_input_end(context);
}

bool take_exposure(input_queue &queue)
{
    const bool exposed = queue.exposed;
    queue.exposed = false;
    return exposed;
}

} // namespace vimbo
