// The font as Nuklear draws it: its glyphs in a texture, baked for the screen's
// density, so that text is as sharp on a dense screen as on another.
#pragma once

#include "ui/pixel_ratio.hpp"

struct nk_context;
struct nk_font_atlas;

namespace vimbo
{

/// All zero: none yet. Main thread only, with a GL context and Nuklear's backend.
struct baked_font {
    nk_font_atlas *atlas;
    pixel_ratio ratio; // that it is baked for
};

/// Bakes the font for this ratio and makes it the context's, between two layouts; what
/// was baked before is gone. Where no font file can be had, it is Nuklear's own, and
/// the first time a line on standard error says so.
void bake_font(nk_context *context, baked_font &baked, const pixel_ratio &ratio);

} // namespace vimbo
