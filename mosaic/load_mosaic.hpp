#pragma once

#include "mosaic/mosaic.hpp"

namespace vimbo
{

/// Reads the file at `mosaic_path` straight into a new vertex buffer, whose
/// first vertex is the tray's centre. The old one goes first: when there is no
/// file, or it is shorter than its header promises, no mosaic is shown.
void load_mosaic(mosaic_state &mosaic);

} // namespace vimbo
