#pragma once

#include "app/app_state.hpp"

struct GLFWwindow;

namespace vimbo
{

/// Frame after frame, about thirty a second, until the window is closed or the
/// quit button was pressed. Running tools are not waited for.
void run_main_loop(GLFWwindow *window, app_state &app);

} // namespace vimbo
