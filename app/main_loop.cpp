#include "app/main_loop.hpp"

#include "app/main_panel.hpp"
#include "mosaic/load_mosaic.hpp"
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

// The frame's layouts: as many as its input needs, within the time of a frame.
// Only the last one is shown.
void lay_out_frame(app_state &app)
{
    const double start = glfwGetTime();
    take_input(app.input, app.frame.context);
    while (has_input(app.input) && glfwGetTime() - start < frame_wait) {
        app.frame.input_only = true;
        main_panel(app);
        // Nuklear takes its lists of popups apart only when it is asked for what
        // is to be drawn; left standing, they would join into a circle.
        nk__begin(app.frame.context);
        nk_clear(app.frame.context);
        take_input(app.input, app.frame.context);
    }
    app.frame.input_only = false;
    main_panel(app);
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
        // Input that is left over is not waited upon.
        glfwWaitEventsTimeout(has_input(app.input) ? 0 : frame_wait);
        begin_backend_frame(app.frame.context);
        clear_window(window, app.frame);
        reset_frame_flags(app.frame);
        if (first_frame)
            request_mosaic_reload(app.frame);
        first_frame = false;
        lay_out_frame(app);
        show_frame(window, app);
        collect_released_commands();
        if (has_flag(app.frame.frame_flags, frame_flag::quit))
            break;
    }
}

} // namespace vimbo
