// The one shader program of the preview: line strips of path_vertex records.
#pragma once

#include <GL/glew.h>

namespace vimbo
{

/// Compiles and links the path shaders. 0 after a failure, whose log then
/// stands on standard error.
GLuint build_path_program();

/// The same from given sources.
GLuint build_path_program(const char *vertex_source, const char *fragment_source);

} // namespace vimbo
