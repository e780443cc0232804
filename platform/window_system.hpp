// The window system behind GLFW: which one it is, and what GLFW leaves out of it. Main
// thread only.
#pragma once

struct GLFWwindow;

namespace vimbo
{

/// Starts GLFW with the window system that the desktop prefers, or where that fails with
/// another one. False when none can be had; GLFW's error callback was told of the first
/// failure.
bool start_window_system();

/// For a window that could not be had: ends GLFW and starts it with another window
/// system. False, with GLFW ended, when there is no other.
bool start_other_window_system();

/// Before a window is made: the name by which the desktop finds its menu entry and icon.
void hint_window_name(const char *name);

/// For the window whose context is current: shows frames without waiting for the desktop
/// where it may never take them, since nobody sees the window.
void show_frames_at_once();

/// Has `entered` called with the place where the pointer comes into the window, in its
/// own units, on systems where GLFW tells only that it came, and does not know where.
/// False on others.
bool watch_pointer_entry(GLFWwindow *window,
                         void (*entered)(GLFWwindow *window, double x, double y));

/// Before GLFW ends: takes that back. Does nothing where nothing is watched.
void unwatch_pointer_entry();

} // namespace vimbo
