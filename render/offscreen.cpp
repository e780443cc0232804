#include "render/offscreen.hpp"

#include <algorithm>

namespace vimbo
{

bool fit_offscreen(offscreen &picture, GLsizei width, GLsizei height)
{
    if (picture.framebuffer != 0 && picture.width == width && picture.height == height)
        return true;
    delete_offscreen(picture);
    glGenFramebuffers(1, &picture.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glGenTextures(1, &picture.colour);
    glBindTexture(GL_TEXTURE_2D, picture.colour);
    // Eight bits a channel, as the window's own buffer: what is drawn here and
    // there has to be the same. A software renderer copies to the window five times
    // as fast when the bytes have the window's order, which Mesa gives to this pair
    // of formats only while the internal one has no size.
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, picture.colour, 0);
    // Nothing is hidden by depth, but Mesa rounds lines another way without it.
    glGenRenderbuffers(1, &picture.depth);
    glBindRenderbuffer(GL_RENDERBUFFER, picture.depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              picture.depth);
    const bool made = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (!made) {
        delete_offscreen(picture);
        return false;
    }
    picture.width = width;
    picture.height = height;
    return true;
}

void delete_offscreen(offscreen &picture)
{
    glDeleteFramebuffers(1, &picture.framebuffer);
    glDeleteTextures(1, &picture.colour);
    glDeleteRenderbuffers(1, &picture.depth);
    picture = {};
}

void fill_offscreen(const offscreen &picture, const pixel_edges &part, const GLfloat *colour)
{
    const GLint left = std::max(part.left, 0);
    const GLint bottom = std::max(part.bottom, 0);
    const GLsizei width = std::min(part.right, picture.width) - left;
    const GLsizei height = std::min(part.top, picture.height) - bottom;
    if (width <= 0 || height <= 0)
        return;
    // A software renderer clears a part of a framebuffer by drawing it, which takes several
    // times as long.
    if (GLEW_ARB_clear_texture != 0) {
        glClearTexSubImage(picture.colour, 0, left, bottom, 0, width, height, 1, GL_RGBA, GL_FLOAT,
                           colour);
        return;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glEnable(GL_SCISSOR_TEST);
    glScissor(left, bottom, width, height);
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

GLint row_in(const offscreen &picture, GLint window_row)
{
    return picture.upside_down ? picture.height - window_row : window_row;
}

void copy_to_window(const offscreen &picture, const pixel_edges &from, const pixel_edges &to,
                    GLenum filter)
{
    glBindFramebuffer(GL_READ_FRAMEBUFFER, picture.framebuffer);
    glBlitFramebuffer(from.left, row_in(picture, from.bottom), from.right,
                      row_in(picture, from.top), to.left, to.bottom, to.right, to.top,
                      GL_COLOR_BUFFER_BIT, filter);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
}

void copy_from_window(offscreen &picture, const pixel_edges &from, const pixel_edges &to)
{
    picture.upside_down = true;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, picture.framebuffer);
    glBlitFramebuffer(from.left, from.bottom, from.right, from.top, to.left,
                      row_in(picture, to.bottom), to.right, row_in(picture, to.top),
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
}

bool can_turn_clip_origin()
{
    return GLEW_ARB_clip_control != 0;
}

void turn_clip_origin(bool upside_down)
{
    glClipControl(upside_down ? GL_UPPER_LEFT : GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
}

} // namespace vimbo
