#include "mosaic/path_attributes.hpp"

#include "mosaic/path_vertex.hpp"

#include <cstddef>

namespace vimbo
{

namespace
{

// GL takes an offset into the buffer as a pointer.
const void *buffer_offset(std::size_t bytes)
{
    return reinterpret_cast<const void *>(bytes); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

void set_path_vertex_attributes()
{
    glVertexAttribPointer(position_attribute, 2, GL_INT, GL_TRUE, sizeof(path_vertex),
                          buffer_offset(offsetof(path_vertex, x)));
    glEnableVertexAttribArray(position_attribute);
    glVertexAttribIPointer(flag_attribute, 1, GL_INT, sizeof(path_vertex),
                           buffer_offset(offsetof(path_vertex, y)));
    glEnableVertexAttribArray(flag_attribute);
}

} // namespace vimbo
