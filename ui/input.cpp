#include "ui/input.hpp"

#include "ui/clipboard.hpp"
#include "ui/nuklear_backend.hpp"

namespace vimbo
{

namespace
{

// GLFW's callbacks take no argument of ours.
struct {
    bool repeated[NK_KEY_MAX];
} key_repeats;

// The keys whose repeats an edit box understands, as the backend maps them.
nk_keys key_of(int glfw_key, int modifiers)
{
    const bool control = (modifiers & GLFW_MOD_CONTROL) != 0;
    switch (glfw_key) {
    case GLFW_KEY_DELETE:
        return NK_KEY_DEL;
    case GLFW_KEY_BACKSPACE:
        return NK_KEY_BACKSPACE;
    case GLFW_KEY_ENTER:
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
    case GLFW_KEY_PAGE_UP:
        return NK_KEY_SCROLL_UP;
    case GLFW_KEY_PAGE_DOWN:
        return NK_KEY_SCROLL_DOWN;
    case GLFW_KEY_V:
        return control ? NK_KEY_PASTE : NK_KEY_NONE;
    case GLFW_KEY_Z:
        return control ? NK_KEY_TEXT_UNDO : NK_KEY_NONE;
    case GLFW_KEY_R:
        return control ? NK_KEY_TEXT_REDO : NK_KEY_NONE;
    default:
        return NK_KEY_NONE;
    }
}

void note_key(GLFWwindow * /*window*/, int key, int /*scancode*/, int action, int modifiers)
{
    if (action == GLFW_REPEAT)
        key_repeats.repeated[key_of(key, modifiers)] = true;
}

} // namespace

void keep_all_input(GLFWwindow *window, nk_context *context)
{
    glfwSetInputMode(window, GLFW_STICKY_KEYS, GLFW_TRUE);
    glfwSetInputMode(window, GLFW_STICKY_MOUSE_BUTTONS, GLFW_TRUE);
    glfwSetKeyCallback(window, note_key);
    use_clipboard(window, context);
}

void replay_key_repeats(nk_context *context)
{
    for (int key = NK_KEY_NONE + 1; key < NK_KEY_MAX; ++key) {
        nk_key &state = context->input.keyboard.keys[key];
        if (key_repeats.repeated[key] && state.down != 0 && state.clicked == 0)
            state.clicked = 1;
        key_repeats.repeated[key] = false;
    }
}

} // namespace vimbo
