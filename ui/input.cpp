#include "ui/input.hpp"

#include "ui/clipboard.hpp"
#include "ui/nuklear_backend.hpp"

#include <cctype>

namespace vimbo
{

namespace
{

// The order in which an edit box acts upon what it finds in one frame.
enum class phase { nothing, key, text, enter, cut_or_copy, paste, tab };

struct batch {
    phase reached = phase::nothing;
    bool pointer_used = false; // a button or the wheel: the pointer has to stay
    bool button_used = false;
    bool key_used = false; // shift has to stay
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

bool take_button(batch &taken, nk_context *context, const input_event &event)
{
    if (taken.button_used || keyboard_used(taken))
        return false;
    take_motion(context, event);
    nk_input_button(context, static_cast<nk_buttons>(event.code), static_cast<int>(event.x),
                    static_cast<int>(event.y), event.down ? nk_true : nk_false);
    taken.button_used = true;
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
    nk_key &shift = context->input.keyboard.keys[NK_KEY_SHIFT];
    const bool other_shift = taken.key_used && (shift.down != nk_false) != event.shift;
    if (taken.button_used || other_shift || taken.reached >= phase_of(key))
        return false;
    press(context, key);
    // The ends of the text are also the ends of what scrolls.
    if (key == NK_KEY_TEXT_START)
        press(context, NK_KEY_SCROLL_START);
    if (key == NK_KEY_TEXT_END)
        press(context, NK_KEY_SCROLL_END);
    shift.down = event.shift ? nk_true : nk_false;
    taken.key_used = true;
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
        return true;
    case input_kind::button:
        return take_button(taken, context, event);
    case input_kind::scroll:
        nk_input_scroll(context, nk_vec2(event.x, event.y));
        taken.pointer_used = true;
        return true;
    case input_kind::character:
        return take_character(taken, context, event);
    case input_kind::key:
        return take_key(taken, context, event);
    }
    return true;
}

// Keys that mean the same whatever the keyboard's layout.
nk_keys function_key(int key, bool control)
{
    switch (key) {
    case GLFW_KEY_DELETE:
        return NK_KEY_DEL;
    case GLFW_KEY_BACKSPACE:
        return NK_KEY_BACKSPACE;
    case GLFW_KEY_ENTER:
    case GLFW_KEY_KP_ENTER:
        return NK_KEY_ENTER;
    case GLFW_KEY_TAB:
        return NK_KEY_TAB;
    case GLFW_KEY_UP:
        return NK_KEY_UP;
    case GLFW_KEY_DOWN:
        return NK_KEY_DOWN;
    case GLFW_KEY_LEFT:
        return control ? NK_KEY_TEXT_WORD_LEFT : NK_KEY_LEFT;
    case GLFW_KEY_RIGHT:
        return control ? NK_KEY_TEXT_WORD_RIGHT : NK_KEY_RIGHT;
    case GLFW_KEY_HOME:
        return NK_KEY_TEXT_START;
    case GLFW_KEY_END:
        return NK_KEY_TEXT_END;
    case GLFW_KEY_PAGE_UP:
        return NK_KEY_SCROLL_UP;
    case GLFW_KEY_PAGE_DOWN:
        return NK_KEY_SCROLL_DOWN;
    default:
        return NK_KEY_NONE;
    }
}

nk_keys shortcut(char letter, bool shift)
{
    switch (letter) {
    case 'a':
        return NK_KEY_TEXT_SELECT_ALL;
    case 'b':
        return NK_KEY_TEXT_LINE_START;
    case 'c':
        return NK_KEY_COPY;
    case 'e':
        return NK_KEY_TEXT_LINE_END;
    case 'r':
    case 'y':
        return NK_KEY_TEXT_REDO;
    case 'v':
        return NK_KEY_PASTE;
    case 'x':
        return NK_KEY_CUT;
    case 'z':
        return shift ? NK_KEY_TEXT_REDO : NK_KEY_TEXT_UNDO;
    default:
        return NK_KEY_NONE;
    }
}

// The letter on the key where the layout has one, else the one that stands there
// on a keyboard of the usual Latin layout.
char letter_of(int key, int scancode)
{
    const char *name = glfwGetKeyName(key, scancode);
    const bool latin = name != nullptr && name[0] != '\0' && name[1] == '\0' &&
                       std::isalpha(static_cast<unsigned char>(name[0])) != 0;
    if (latin)
        return static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
    return key >= GLFW_KEY_A && key <= GLFW_KEY_Z ? static_cast<char>('a' + key - GLFW_KEY_A)
                                                  : '\0';
}

input_queue &queue_of(GLFWwindow *window)
{
    return *static_cast<input_queue *>(glfwGetWindowUserPointer(window));
}

void on_key(GLFWwindow *window, int key, int scancode, int action, int modifiers)
{
    if (action == GLFW_RELEASE)
        return;
    const bool control = (modifiers & GLFW_MOD_CONTROL) != 0;
    const bool shift = (modifiers & GLFW_MOD_SHIFT) != 0;
    nk_keys code = function_key(key, control);
    if (code == NK_KEY_NONE && control)
        code = shortcut(letter_of(key, scancode), shift);
    if (code != NK_KEY_NONE)
        queue_input(queue_of(window), {input_kind::key, true, shift, code, 0, 0});
}

void on_character(GLFWwindow *window, unsigned int code_point)
{
    queue_input(queue_of(window), {input_kind::character, true, false, code_point, 0, 0});
}

void on_motion(GLFWwindow *window, double x, double y)
{
    input_queue &queue = queue_of(window);
    queue.pointer_x = static_cast<float>(x);
    queue.pointer_y = static_cast<float>(y);
    queue_input(queue, {input_kind::motion, false, false, 0, queue.pointer_x, queue.pointer_y});
}

void note_pointer(GLFWwindow *window)
{
    double x = 0;
    double y = 0;
    glfwGetCursorPos(window, &x, &y);
    on_motion(window, x, y);
}

// The pointer has then another place in the window without having moved.
void on_window_moved(GLFWwindow *window, int /*x*/, int /*y*/)
{
    note_pointer(window);
}

void on_button(GLFWwindow *window, int button, int action, int /*modifiers*/)
{
    nk_buttons code = NK_BUTTON_LEFT;
    if (button == GLFW_MOUSE_BUTTON_MIDDLE)
        code = NK_BUTTON_MIDDLE;
    else if (button == GLFW_MOUSE_BUTTON_RIGHT)
        code = NK_BUTTON_RIGHT;
    else if (button != GLFW_MOUSE_BUTTON_LEFT)
        return;
    // Not where GLFW finds the pointer: that is where it is now, however long ago
    // the button was pressed.
    input_queue &queue = queue_of(window);
    queue_input(queue, {input_kind::button, action == GLFW_PRESS, false, code, queue.pointer_x,
                        queue.pointer_y});
}

void on_scroll(GLFWwindow *window, double x, double y)
{
    queue_input(queue_of(window), {input_kind::scroll, false, false, 0, static_cast<float>(x),
                                   static_cast<float>(y)});
}

void on_refresh(GLFWwindow *window)
{
    queue_of(window).exposed = true;
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

void watch_input(GLFWwindow *window, nk_context *context, input_queue &queue)
{
    glfwSetWindowUserPointer(window, &queue);
    glfwSetKeyCallback(window, on_key);
    glfwSetCharCallback(window, on_character);
    glfwSetCursorPosCallback(window, on_motion);
    glfwSetMouseButtonCallback(window, on_button);
    glfwSetScrollCallback(window, on_scroll);
    glfwSetWindowRefreshCallback(window, on_refresh);
    glfwSetWindowPosCallback(window, on_window_moved);
    use_clipboard(window, context);
    note_pointer(window);
}

void begin_backend_frame(nk_context *context)
{
    const nk_input input = context->input;
    nk_glfw3_new_frame();
    context->input = input;
}

} // namespace vimbo
