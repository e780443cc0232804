#include "render/offscreen.hpp"

namespace vimbo
{

bool fit_offscreen(offscreen &picture, GLsizei width, GLsizei height)
{
    if (picture.framebuffer != 0 && picture.width == width && picture.height == height)
        return true;
    delete_offscreen(picture);
    glGenFramebuffers(1, &picture.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glGenRenderbuffers(1, &picture.colour);
    glBindRenderbuffer(GL_RENDERBUFFER, picture.colour);
    // As the window's own buffer: what is drawn here and there has to be the same.
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                              picture.colour);
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
    glDeleteRenderbuffers(1, &picture.colour);
    picture = {};
}

} // namespace vimbo
