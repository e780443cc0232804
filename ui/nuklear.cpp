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

// It clips each command; what is drawn as a whole may be limited besides.
struct edges {
    GLint left, bottom, right, top;
};
static const edges no_limit = {-(1 << 28), -(1 << 28), 1 << 28, 1 << 28};
static edges drawing_limit = no_limit;

static void scissor_within_limit(GLint x, GLint y, GLsizei width, GLsizei height)
{
    const GLint left = x > drawing_limit.left ? x : drawing_limit.left;
    const GLint bottom = y > drawing_limit.bottom ? y : drawing_limit.bottom;
    const GLint right = x + width < drawing_limit.right ? x + width : drawing_limit.right;
    const GLint top = y + height < drawing_limit.top ? y + height : drawing_limit.top;
    glScissor(left, bottom, right > left ? right - left : 0, top > bottom ? top - bottom : 0);
}
#define glScissor(x, y, width, height) scissor_within_limit(x, y, width, height)

#define NK_GLFW_GL3_IMPLEMENTATION
#include <nuklear_glfw_gl3.h>

namespace vimbo
{

void render_backend()
{
    constexpr int vertex_buffer_size = 16777216;
    constexpr int element_buffer_size = 4194304;
    // The commands count in pixels; left to the backend, smoothed edges would be as wide
    // as a unit of the window, and shapes that touch would leave a seam.
    glfw.width = glfw.display_width;
    glfw.height = glfw.display_height;
    glfw.fb_scale = nk_vec2(1, 1);
    nk_glfw3_render(NK_ANTI_ALIASING_ON, vertex_buffer_size, element_buffer_size);
    // The backend leaves each frame's draw commands where it has put them, and the
    // next frame's behind them: kilobytes with every frame, all day long.
    nk_buffer_clear(glfw.ctx.draw_list.buffer);
}

void render_backend_within(GLint left, GLint bottom, GLint right, GLint top)
{
    drawing_limit = {left, bottom, right, top};
    render_backend();
    drawing_limit = no_limit;
}

} // namespace vimbo
