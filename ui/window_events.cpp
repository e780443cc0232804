#include "ui/window_events.hpp"

#include "platform/window_system.hpp"
#include "ui/nuklear_backend.hpp"
#include "ui/take_key.hpp"

#include <cctype>
#include <cmath>

namespace vimbo
{

namespace
{

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
    case GLFW_KEY_ESCAPE:
        return escape_key;
    case GLFW_KEY_HOME:
        return control ? NK_KEY_TEXT_START : NK_KEY_TEXT_LINE_START;
    case GLFW_KEY_END:
        return control ? NK_KEY_TEXT_END : NK_KEY_TEXT_LINE_END;
    case GLFW_KEY_F3:
        return find_key;
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
    // GLFW takes the question for an error where the key is none of its own.
    const char *name = key != GLFW_KEY_UNKNOWN ? glfwGetKeyName(key, scancode) : nullptr;
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
        queue_input(queue_of(window), {input_kind::key, true, shift, code, 0, 0, control});
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

bool is_dragging(GLFWwindow *window)
{
    return glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_LEFT) == GLFW_PRESS ||
           glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_MIDDLE) == GLFW_PRESS ||
           glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_RIGHT) == GLFW_PRESS;
}

// Asks where the pointer is. Beyond the window's edge it is followed only while it
// drags: then what lies over the window, or beside it, is not in its way.
void note_pointer(GLFWwindow *window)
{
    constexpr double far_outside = -16384;
    double x = far_outside;
    double y = far_outside;
    if (is_dragging(window) || glfwGetWindowAttrib(window, GLFW_HOVERED) == GLFW_TRUE)
        glfwGetCursorPos(window, &x, &y);
    on_motion(window, x, y);
}

// GLFW tells of no motion outside, nor of one that it finds to end where the last
// one did.
void on_pointer_crossed_edge(GLFWwindow *window, int entered)
{
    if (entered == GLFW_FALSE || !queue_of(window).entry_told)
        note_pointer(window);
}

// The pointer has then another place in the window without having moved.
void on_window_moved(GLFWwindow *window, int /*x*/, int /*y*/)
{
    note_pointer(window);
}

// True of a press of the left button soon after the one before, at its place.
bool is_pressed_again(input_queue &queue, bool left)
{
    constexpr double soon = 0.4; // seconds
    constexpr float nearby = 4;  // in the window's units
    const double now = glfwGetTime();
    const bool again = left && now - queue.pressed_at < soon &&
                       std::abs(queue.pointer_x - queue.pressed_x) <= nearby &&
                       std::abs(queue.pointer_y - queue.pressed_y) <= nearby;
    queue.pressed_at = left ? now : -soon;
    queue.pressed_x = queue.pointer_x;
    queue.pressed_y = queue.pointer_y;
    return again;
}

void on_button(GLFWwindow *window, int button, int action, int modifiers)
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
    const bool down = action == GLFW_PRESS;
    const bool again = down && is_pressed_again(queue, code == NK_BUTTON_LEFT);
    queue_input(queue,
                {input_kind::button, down, (modifiers & GLFW_MOD_SHIFT) != 0, code, queue.pointer_x,
                 queue.pointer_y, (modifiers & GLFW_MOD_CONTROL) != 0, again});
}

bool is_held(GLFWwindow *window, int left, int right)
{
    return glfwGetKey(window, left) == GLFW_PRESS || glfwGetKey(window, right) == GLFW_PRESS;
}

void on_scroll(GLFWwindow *window, double x, double y)
{
    const bool shift = is_held(window, GLFW_KEY_LEFT_SHIFT, GLFW_KEY_RIGHT_SHIFT);
    const bool control = is_held(window, GLFW_KEY_LEFT_CONTROL, GLFW_KEY_RIGHT_CONTROL);
    queue_input(queue_of(window), {input_kind::scroll, false, shift, 0, static_cast<float>(x),
                                   static_cast<float>(y), control});
}

void on_refresh(GLFWwindow *window)
{
    queue_of(window).exposed = true;
}

} // namespace

void watch_input(GLFWwindow *window, input_queue &queue)
{
    glfwSetWindowUserPointer(window, &queue);
    glfwSetKeyCallback(window, on_key);
    glfwSetCharCallback(window, on_character);
    glfwSetCursorPosCallback(window, on_motion);
    glfwSetCursorEnterCallback(window, on_pointer_crossed_edge);
    glfwSetMouseButtonCallback(window, on_button);
    glfwSetScrollCallback(window, on_scroll);
    glfwSetWindowRefreshCallback(window, on_refresh);
    glfwSetWindowPosCallback(window, on_window_moved);
    queue.entry_told = watch_pointer_entry(window, on_motion);
    note_pointer(window);
}

void begin_backend_frame(nk_context *context)
{
    const nk_input input = context->input;
    nk_glfw3_new_frame();
    context->input = input;
}

} // namespace vimbo
