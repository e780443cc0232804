#pragma once

#include "mosaic/mosaic.hpp"
#include "render/path_buffer.hpp"

namespace vimbo
{

/// What a picture is drawn of: the path program, 0 when its shaders failed, and
/// what it draws.
struct picture_parts {
    GLuint program;
    const mosaic_state &mosaic;
    const path_buffer &outline;
};

} // namespace vimbo
