#include "app/main_loop.hpp"

#include "app/main_panel.hpp"
#include "platform/commands.hpp"
#include "render/preview_picture.hpp"
#include "ui/flags.hpp"
#include "ui/input.hpp"
#include "ui/nuklear_backend.hpp"

namespace vimbo
{

namespace
{

constexpr double frame_wait = 1.0 / 30.0; // seconds without an event
constexpr int vertex_buffer_size = 16777216;
constexpr int element_buffer_size = 4194304;

void clear_window(GLFWwindow *window, frame_state &frame)
{
    glfwGetWindowSize(window, &frame.window_width, &frame.window_height);
    glViewport(0, 0, frame.window_width, frame.window_height);
    glClearColor(0.7F, 0.7F, 0.7F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
}

void show_frame(GLFWwindow *window, app_state &app)
{
    nk_glfw3_render(NK_ANTI_ALIASING_ON, vertex_buffer_size, element_buffer_size);
    if (has_flag(app.frame.frame_flags, frame_flag::reload_mosaic))
        load_mosaic(app.mosaic);
    if (has_flag(app.frame.frame_flags, frame_flag::preview_laid_out))
        draw_preview(app.frame, app.preview, app.path_program, app.mosaic, app.tray_outline);
    glfwSwapBuffers(window);
}

} // namespace

void run_main_loop(GLFWwindow *window, app_state &app)
{
    initialise_panels(app);
    bool first_frame = true;
    while (glfwWindowShouldClose(window) == GLFW_FALSE) {
        glfwWaitEventsTimeout(frame_wait);
        nk_glfw3_new_frame();
        replay_key_repeats(app.frame.context);
        clear_window(window, app.frame);
        reset_frame_flags(app.frame);
        if (first_frame)
            request_mosaic_reload(app.frame);
        first_frame = false;
        main_panel(app);
        show_frame(window, app);
        collect_released_commands();
        if (has_flag(app.frame.frame_flags, frame_flag::quit))
            break;
    }
}

} // namespace vimbo
