// A picture beside the window, to be kept from frame to frame.
#pragma once

#include <GL/glew.h>

namespace vimbo
{

/// Names and size in pixels. All zero: none.
struct offscreen {
    GLuint framebuffer;
    GLuint colour; // a texture
    GLuint depth;  // a renderbuffer
    GLsizei width;
    GLsizei height;
};

/// Makes the picture anew where it has not this size; it is then without
/// content. False, and all zero, when the driver does not make it.
bool fit_offscreen(offscreen &picture, GLsizei width, GLsizei height);

void delete_offscreen(offscreen &picture);

} // namespace vimbo
