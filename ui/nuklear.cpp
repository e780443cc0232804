// Nuklear's and its GLFW/OpenGL 3 backend's implementation; warnings are off
// for this file, whose code is all theirs.
#include <GL/glew.h>

#include <GLFW/glfw3.h>

#include <cstdlib>
#include <cstring>

#define NK_IMPLEMENTATION
#include "ui/nuklear.hpp"

// The backend names the 16-bit index type where it means nk_draw_index.
#undef GL_UNSIGNED_SHORT
#define GL_UNSIGNED_SHORT GL_UNSIGNED_INT

#define NK_GLFW_GL3_IMPLEMENTATION
#include <nuklear_glfw_gl3.h>
