// How a vertex array reads path_vertex records.
#pragma once

#include <GL/glew.h>

namespace vimbo
{

/// Locations of the vertex shader's inputs.
inline constexpr GLuint position_attribute = 0; // vp: x and y, normalised
inline constexpr GLuint flag_attribute = 1;     // vn: y again, as an integer

/// Describes the bound array buffer to the bound vertex array as path_vertex
/// records.
void set_path_vertex_attributes();

} // namespace vimbo
