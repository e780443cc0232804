#include "app/shown_panels.hpp"

#include "ui/nuklear_backend.hpp"

#include <cstring>

namespace vimbo
{

namespace
{

constexpr int vertex_buffer_size = 16777216;
constexpr int element_buffer_size = 4194304;

void draw_panels()
{
    glClearColor(0.7F, 0.7F, 0.7F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    nk_glfw3_render(NK_ANTI_ALIASING_ON, vertex_buffer_size, element_buffer_size);
}

// Upside down: the window's rows run from the top down in memory, the copy's from
// the bottom up, and rows that keep their order are copied without any drawing.
void copy_whole(GLuint from, GLuint to, GLsizei width, GLsizei height)
{
    glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
    glBlitFramebuffer(0, 0, width, height, 0, height, width, 0, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

// True when this layout draws what the copy shows; if not, it is noted.
bool is_as_shown(const frame_state &frame, shown_panels &panels)
{
    nk__begin(frame.context); // the commands are complete only when they are asked for
    const nk_buffer &memory = frame.context->memory;
    if (memory.allocated > sizeof panels.commands) {
        forget_panels(panels);
        return false;
    }
    const bool same = panels.copied && panels.copy.width == frame.window_width &&
                      panels.copy.height == frame.window_height &&
                      panels.command_bytes == memory.allocated &&
                      std::memcmp(panels.commands, memory.memory.ptr, memory.allocated) == 0;
    panels.copied = same;
    panels.command_bytes = memory.allocated;
    std::memcpy(panels.commands, memory.memory.ptr, memory.allocated);
    return same;
}

} // namespace

void forget_panels(shown_panels &panels)
{
    panels.command_bytes = 0;
    panels.copied = false;
}

void render_panels(const frame_state &frame, shown_panels &panels)
{
    const GLsizei width = frame.window_width;
    const GLsizei height = frame.window_height;
    const bool first = panels.command_bytes == 0;
    if (is_as_shown(frame, panels)) {
        nk_clear(frame.context);
        copy_whole(panels.copy.framebuffer, 0, width, height);
        return;
    }
    draw_panels();
    // The program's first frame is waited for; the second will be copied.
    if (first || panels.command_bytes == 0 || !fit_offscreen(panels.copy, width, height))
        return;
    // Copied from the window rather than drawn once more, so that both are alike.
    copy_whole(0, panels.copy.framebuffer, width, height);
    panels.copied = true;
}

} // namespace vimbo
