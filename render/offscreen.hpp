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
    bool upside_down; // its first row is the window's top; who draws it says so
};

/// Rows of the window, origin bottom left, and its columns.
struct pixel_edges {
    GLint left;
    GLint bottom;
    GLint right;
    GLint top;
};

/// Makes the picture anew where it has not this size; it is then without
/// content. False, and all zero, when the driver does not make it.
bool fit_offscreen(offscreen &picture, GLsizei width, GLsizei height);

void delete_offscreen(offscreen &picture);

/// Fills the part of the picture that lies within these rows and columns, its own, with a
/// colour: red, green, blue and alpha, 0 to 1.
void fill_offscreen(const offscreen &picture, const pixel_edges &part, const GLfloat *colour);

/// Where a row of the window lies in the picture.
GLint row_in(const offscreen &picture, GLint window_row);

/// Copies a part of the picture, given as it lies in the window, to a part of the
/// window; the filter counts where they differ in size.
void copy_to_window(const offscreen &picture, const pixel_edges &from, const pixel_edges &to,
                    GLenum filter);

/// Keeps a part of the window, in a part of the picture of that size, given as it lies in
/// a window: upside down, as the window lies in memory, so that a software renderer copies
/// it both ways without drawing. All of the picture has to come so.
void copy_from_window(offscreen &picture, const pixel_edges &from, const pixel_edges &to);

/// True when the driver can draw upside down (GL_ARB_clip_control). The window's
/// rows run from the top down in memory, an offscreen picture's from the bottom
/// up, and a driver that mirrors one of them rounds the other way: a path would
/// cover other pixels now and then. Drawing offscreen upside down makes both alike.
bool can_turn_clip_origin();

/// Draws upside down from here on, or no longer.
void turn_clip_origin(bool upside_down);

} // namespace vimbo
