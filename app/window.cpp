#include "app/window.hpp"

#include "platform/exit_limit.hpp"
#include "platform/window_system.hpp"
#include "render/path_program.hpp"
#include "ui/baked_font.hpp"
#include "ui/clipboard.hpp"
#include "ui/nuklear_backend.hpp"
#include "ui/window_events.hpp"

#include <cstdio>

namespace vimbo
{

namespace
{

constexpr char program_id[] = "vimbo";

void report_glfw_error(int code, const char *description)
{
    std::printf("glfw err %d: %s\n", code, description);
    // Written at once: the program may end without flushing when GLFW fails.
    std::fflush(stdout);
}

void set_window_hints()
{
    glfwWindowHint(GLFW_RED_BITS, 8);
    glfwWindowHint(GLFW_GREEN_BITS, 8);
    glfwWindowHint(GLFW_BLUE_BITS, 8);
    glfwWindowHint(GLFW_ALPHA_BITS, 8);
    glfwWindowHint(GLFW_CLIENT_API, GLFW_OPENGL_API);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    glfwWindowHint(GLFW_DOUBLEBUFFER, 1);
    // A second time on purpose: hints are set in their known order, and this one
    // changes nothing.
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    hint_window_name(program_id);
}

// X tells places in a window by 16 bits with a sign, and the whole window is handed
// to it in one piece whose length has 32: it cuts larger ones or ends the program.
// A negative size is a mistake of the program's to GLFW, which ends it too.
bool can_be_asked_for(std::int32_t width, std::int32_t height)
{
    constexpr std::int32_t most = 32767;
    constexpr std::int64_t most_pixels = std::int64_t{1} << 29; // of four bytes each
    return width >= 0 && height >= 0 && width <= most && height <= most &&
           std::int64_t{width} * height <= most_pixels;
}

// What lies beyond the driver's limit would stay empty.
bool can_be_drawn(GLsizei width, GLsizei height)
{
    GLint most[2] = {};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
    return width <= most[0] && height <= most[1];
}

// Null when there is no window of the wanted size to be had; its context is current.
GLFWwindow *open_wanted_window(const frame_state &frame)
{
    if (!can_be_asked_for(frame.window_width, frame.window_height))
        return nullptr;
    set_window_hints();
    GLFWwindow *window = glfwCreateWindow(frame.window_width, frame.window_height,
                                          "Orvanne Material Editor", nullptr, nullptr);
    if (window == nullptr)
        return nullptr;
    glfwMakeContextCurrent(window);
    return can_be_drawn(frame.window_width, frame.window_height) ? window : nullptr;
}

GLFWwindow *create_window(frame_state &frame)
{
    GLFWwindow *window = open_wanted_window(frame);
    if (window == nullptr && start_other_window_system())
        window = open_wanted_window(frame);
    if (window == nullptr) {
        std::fputs("Failed to create the window\n", stderr);
        return nullptr;
    }
    show_frames_at_once();
    read_window_size(window, frame);
    glewExperimental = GL_TRUE;
    if (!has_gl_functions(glewInit())) {
        std::fputs("Failed to setup GLEW\n", stderr);
        return nullptr;
    }
    return window;
}

} // namespace

GLFWwindow *open_window(app_state &app)
{
    glfwSetErrorCallback(report_glfw_error);
    if (!start_window_system()) {
        // "GFLW" is what this line has always said; it stays.
        std::fputs("GFLW failed to init!\n", stderr);
        return nullptr;
    }
    GLFWwindow *window = create_window(app.frame);
    if (window == nullptr) {
        glfwTerminate();
        return nullptr;
    }
    app.frame.context = nk_glfw3_init(window, NK_GLFW3_INSTALL_CALLBACKS);
    watch_input(window, app.input);
    serve_clipboard(window, app.frame.context, app.clipboard);
    bake_font(app.frame.context, app.font, app.frame.ratio);
    app.path_program = build_path_program();
    app.tray_outline = build_tray_outline(app.tray.width, app.tray.height, app.tray.corner_radius);
    return window;
}

void read_window_size(GLFWwindow *window, frame_state &frame)
{
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(window, &width, &height);
    glfwGetWindowSize(window, &frame.window_width, &frame.window_height);
    frame.ratio = ratio_of(frame.window_width, frame.window_height, width, height);
    glViewport(0, 0, in_pixels(frame.window_width, frame.ratio.x),
               in_pixels(frame.window_height, frame.ratio.y));
}

bool has_gl_functions(unsigned int glew_answer)
{
    // Under Wayland GLEW misses an X display, though it has found all functions.
    return glew_answer == GLEW_OK ||
           (glew_answer == GLEW_ERROR_NO_GLX_DISPLAY && glGenVertexArrays != nullptr);
}

void close_window()
{
    nk_glfw3_shutdown();
    unwatch_pointer_entry();
    // GLFW takes the window away, then waits without end for the desktop's clipboard
    // manager to take over a text that was copied here.
    limit_exit_time();
    glfwTerminate();
}

} // namespace vimbo
