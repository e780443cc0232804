// Vimbo: one window to edit material sources, have them evaluated or integrated
// into a tray's mosaics, and look at the outcome.
#include "app/command_line.hpp"
#include "app/main_loop.hpp"
#include "app/window.hpp"
#include "platform/program_start.hpp"

namespace
{

constexpr int failure_status = -1;

} // namespace

int main(int argument_count, char *arguments[])
{
    vimbo::start_program(argument_count, arguments);
    static vimbo::app_state app;
    if (!vimbo::read_command_line(app, argument_count, arguments))
        return failure_status;
    GLFWwindow *window = vimbo::open_window(app);
    if (window == nullptr)
        return failure_status;
    vimbo::run_main_loop(window, app);
    vimbo::close_window();
    return 0;
}
