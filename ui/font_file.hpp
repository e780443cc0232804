// Nuklear trusts a font file to the last byte: what it is given is looked at
// before.
#pragma once

namespace vimbo
{

/// True when the file is a TrueType font that Nuklear can bake, and all that it
/// reads of it is as it was made.
bool is_whole_font(const char *path);

} // namespace vimbo
