// Nuklear's and its GLFW/OpenGL 3 backend's implementation; warnings are off
// for this file, whose code is all theirs.
#include "platform/files.hpp"

#include <GL/glew.h>

#include <GLFW/glfw3.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Nuklear opens the font by its path, which is UTF-8; a C library's own fopen need not
// take it so.
static FILE *open_font(const char *path)
{
    std::uint64_t size = 0;
    return vimbo::open_regular_file(path, size);
}
#define fopen(path, mode) open_font(path)

#define NK_IMPLEMENTATION
#include "ui/nuklear.hpp"

// The backend names the 16-bit index type where it means nk_draw_index.
#undef GL_UNSIGNED_SHORT
#define GL_UNSIGNED_SHORT GL_UNSIGNED_INT

#define NK_GLFW_GL3_IMPLEMENTATION
#include <nuklear_glfw_gl3.h>
