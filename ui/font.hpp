// The one font, with the characters that the program's own labels need.
#pragma once

#include "ui/nuklear.hpp"

#include <span>

namespace vimbo
{

/// Where the font lies relative to the working directory, or failing that to
/// the program's own directory.
inline constexpr char font_path[] = "../share/pellor/common/fonts/iosevka-regular.ttf";

/// How high its text is laid out, and that of Nuklear's own font, in the window's units.
inline constexpr float font_height = 16;
inline constexpr float built_in_font_height = 13;

/// Finds the font file. False, with an empty path, when it is nowhere, or what
/// is there is no font, or a damaged one.
bool find_font_file(std::span<char> path);

/// Adds the font file to the atlas, between its begin and its end, to be baked so many
/// pixels high; that rules over the configured height. Null when the file is none that
/// can be read.
struct nk_font *add_font(nk_font_atlas *atlas, const char *path, float pixels);

/// Once the atlas is baked: moves each glyph up or down by less than a pixel, so that
/// its pixels are the screen's where its row begins on one.
void put_glyphs_on_pixels(struct nk_font *font);

/// Once the atlas is baked: a tab shows as four blanks, a carriage return as one.
void blank_control_characters(struct nk_font *font);

} // namespace vimbo
