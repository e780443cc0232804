// Nuklear's GLFW/OpenGL 3 backend: the functions, not their implementation.
#pragma once

#include <GL/glew.h>

#include <GLFW/glfw3.h>

#include "ui/nuklear.hpp"

#include <nuklear_glfw_gl3.h>

namespace vimbo
{

/// Has Nuklear's commands, which count in pixels by now, drawn, but only within this
/// part of the window: columns and rows in GL's window coordinates, the last ones
/// outside.
void render_backend_within(GLint left, GLint bottom, GLint right, GLint top);

/// The same for the whole window.
void render_backend();

} // namespace vimbo
