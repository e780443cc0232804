#include "app/main_loop.hpp"

#include "app/main_panel.hpp"
#include "app/window.hpp"
#include "mosaic/load_mosaic.hpp"
#include "platform/commands.hpp"
#include "render/preview_picture.hpp"
#include "ui/draw_commands.hpp"
#include "ui/flags.hpp"
#include "ui/input_queue.hpp"
#include "ui/nuklear_backend.hpp"
#include "ui/window_events.hpp"

namespace vimbo
{

namespace
{

// A frame may take that much longer while a picture is drawn in slices, or the
// frames between them would hold it up.
constexpr double slices_time = 1.0 / 25.0;

picture_parts parts_of(const app_state &app)
{
    return {app.path_program, app.mosaic, app.tray_outline};
}

// Waits for input or for what is left of the frame's time, which began at `frame_start`;
// a picture that is not whole is drawn on meanwhile.
void await_events(GLFWwindow *window, app_state &app, double frame_start)
{
    if (has_input(app.input)) {
        glfwPollEvents();
        return;
    }
    const bool picture_shown = has_flag(app.frame.frame_flags, frame_flag::preview_laid_out);
    if (!picture_shown || !is_unfinished(app.picture)) {
        const double left = frame_start + frame_time - glfwGetTime();
        if (left > 0)
            glfwWaitEventsTimeout(left);
        else
            glfwPollEvents();
        return;
    }
    const double start = glfwGetTime();
    do {
        draw_slice(app.picture, parts_of(app));
        glfwPollEvents();
    } while (is_unfinished(app.picture) && !has_input(app.input) &&
             glfwWindowShouldClose(window) == GLFW_FALSE && glfwGetTime() - start < slices_time);
}

// The frame's layouts: as many as its input needs, within the time of a frame.
// Only the last one is shown.
void lay_out_frame(app_state &app)
{
    const double start = glfwGetTime();
    take_input(app.input, app.frame.context);
    while (has_input(app.input) && glfwGetTime() - start < frame_time) {
        app.frame.input_only = true;
        main_panel(app);
        complete_draw_commands(app.frame.context); // though nothing draws them
        nk_clear(app.frame.context);
        take_input(app.input, app.frame.context);
    }
    app.frame.input_only = false;
    main_panel(app);
}

void show_frame(GLFWwindow *window, app_state &app)
{
    if (take_exposure(app.input))
        forget_panels(app.panels);
    render_panels(app.frame, app.panels);
    if (has_flag(app.frame.frame_flags, frame_flag::reload_mosaic))
        load_mosaic(app.mosaic);
    if (has_flag(app.frame.frame_flags, frame_flag::preview_laid_out)) {
        draw_preview(app.frame, app.preview, parts_of(app), app.picture);
        render_popup_again(app.panels);
    }
    glfwSwapBuffers(window);
}

} // namespace

void run_main_loop(GLFWwindow *window, app_state &app)
{
    initialise_panels(app);
    bool first_frame = true;
    double frame_start = glfwGetTime();
    while (glfwWindowShouldClose(window) == GLFW_FALSE) {
        await_events(window, app, frame_start);
        frame_start = glfwGetTime();
        begin_backend_frame(app.frame.context);
        read_window_size(window, app.frame);
        if (app.font.ratio != app.frame.ratio)
            bake_font(app.frame.context, app.font, app.frame.ratio);
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
