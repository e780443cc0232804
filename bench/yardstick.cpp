// Programs to measure Vimbo against, in the same window and with the same toolkit:
//
//   yardstick clear    a window that is cleared, no more
//   yardstick panel    Nuklear with the font and one empty panel
//   yardstick panels   all of Vimbo's panels, drawn anew each frame, the preview
//                      empty
//
// Each runs until its window is closed.
#include "app/app_state.hpp"
#include "app/main_panel.hpp"
#include "bench/measured_program.hpp"
#include "ui/flags.hpp"
#include "ui/font.hpp"
#include "ui/nuklear_backend.hpp"

#include <cstdio>
#include <string_view>

namespace
{

constexpr int vertex_bytes = 16777216;
constexpr int element_bytes = 4194304;
constexpr double frame_wait = 1.0 / 30;

GLFWwindow *open_plain_window()
{
    if (glfwInit() == GLFW_FALSE)
        return nullptr;
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow *window = glfwCreateWindow(bench::window_width, bench::window_height,
                                          "Orvanne Material Editor", nullptr, nullptr);
    if (window == nullptr)
        return nullptr;
    glfwMakeContextCurrent(window);
    glewExperimental = GL_TRUE;
    return glewInit() == GLEW_OK ? window : nullptr;
}

nk_context *set_up_toolkit(GLFWwindow *window)
{
    nk_context *context = nk_glfw3_init(window, NK_GLFW3_INSTALL_CALLBACKS);
    nk_font_atlas *atlas = nullptr;
    nk_glfw3_font_stash_begin(&atlas);
    char path[4352];
    struct nk_font *font =
        vimbo::find_font_file(path) ? vimbo::add_font(atlas, path, vimbo::font_height) : nullptr;
    nk_glfw3_font_stash_end();
    if (font == nullptr)
        return nullptr;
    nk_style_set_font(context, &font->handle);
    return context;
}

void clear()
{
    glViewport(0, 0, bench::window_width, bench::window_height);
    glClearColor(0.7F, 0.7F, 0.7F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
}

void empty_panel(nk_context *context)
{
    nk_begin(context, "MeRo", nk_rect(0, 0, bench::window_width, bench::window_height),
             NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR);
    nk_end(context);
}

void start_panels(vimbo::app_state &app, nk_context *context)
{
    app.frame.context = context;
    app.frame.window_width = bench::window_width;
    app.frame.window_height = bench::window_height;
    app.frame.ui_flags =
        vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown | vimbo::ui_flag::stats_shown;
    vimbo::initialise_panels(app);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    const std::string_view what = argument_count == 2 ? arguments[1] : "";
    GLFWwindow *window = open_plain_window();
    if (window == nullptr)
        return 1;
    static vimbo::app_state app;
    nk_context *context = what == "clear" ? nullptr : set_up_toolkit(window);
    if (what != "clear" && context == nullptr) {
        std::fputs("yardstick: no font\n", stderr);
        return 1;
    }
    if (what == "panels")
        start_panels(app, context);
    while (glfwWindowShouldClose(window) == GLFW_FALSE) {
        glfwWaitEventsTimeout(frame_wait);
        if (context != nullptr)
            nk_glfw3_new_frame();
        clear();
        if (what == "panels")
            vimbo::main_panel(app);
        else if (context != nullptr)
            empty_panel(context);
        if (context != nullptr)
            nk_glfw3_render(NK_ANTI_ALIASING_ON, vertex_bytes, element_bytes);
        glfwSwapBuffers(window);
    }
    glfwTerminate();
    return 0;
}
