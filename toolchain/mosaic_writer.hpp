#pragma once

#include "mosaic/path_vertex.hpp"

#include <span>
#include <string>

namespace toolchain
{

/// Writes the moves as a mosaic file beside `path` and renames it into place, so
/// that no reader ever sees half of one. Returns what failed, or an empty text;
/// what stood at `path` is then untouched.
std::string write_mosaic(const std::string &path, std::span<const vimbo::path_vertex> moves);

} // namespace toolchain
