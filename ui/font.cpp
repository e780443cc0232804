#include "ui/font.hpp"

#include "platform/files.hpp"
#include "ui/fixed_text.hpp"
#include "ui/font_file.hpp"

#include <cmath>

namespace vimbo
{

namespace
{

constexpr std::size_t directory_capacity = 4096;
constexpr float configured_height = 12;
constexpr float blanks_per_tab = 4;

// Pairs of first and last code point.
constexpr nk_rune glyph_ranges[] = {
    0x0009, 0x000D, // tab to carriage return, blanked below
    0x0020, 0x017F, // Latin-1 and Latin Extended-A
    0x033F, 0x033F, // the double bar over the r of the locality curve
    0x0370, 0x03FF, // Greek
    0x2010, 0x2027, // dashes, quotation marks, bullets, dots
    0x2070, 0x209C, // superscripts and subscripts
    0x2190, 0x21FF, // arrows
    0x2200, 0x22FF, // mathematical operators
    0x2580, 0x259F, // block elements
    0,
};

} // namespace

bool find_font_file(std::span<char> path)
{
    if (set_text(path, font_path) && is_whole_font(path.data()))
        return true;
    char directory[directory_capacity];
    if (executable_directory(directory) && format_text(path, "%s/%s", directory, font_path) &&
        is_whole_font(path.data()))
        return true;
    clear_text(path);
    return false;
}

struct nk_font *add_font(nk_font_atlas *atlas, const char *path, float pixels)
{
    if (!is_whole_font(path))
        return nullptr;
    struct nk_font_config config = nk_font_config(configured_height);
    config.range = glyph_ranges;
    return nk_font_atlas_add_from_file(atlas, path, pixels, &config);
}

void put_glyphs_on_pixels(struct nk_font *font)
{
    for (nk_font_glyph &glyph : std::span(font->glyphs, font->info.glyph_count)) {
        const float up = glyph.y0 - std::round(glyph.y0);
        glyph.y0 -= up;
        glyph.y1 -= up;
    }
}

void blank_control_characters(struct nk_font *font)
{
    const nk_font_glyph *space = nk_font_find_glyph(font, ' ');
    constexpr nk_rune blanked[] = {'\t', '\n', '\v', '\f', '\r'};
    for (const nk_rune character : blanked) {
        // The atlas hands its glyphs out as constant, yet they are its own.
        auto *glyph = const_cast<nk_font_glyph *>(nk_font_find_glyph(font, character));
        if (glyph == nullptr || glyph->codepoint != character)
            continue;
        *glyph = *space;
        glyph->codepoint = character;
        if (character == '\t')
            glyph->xadvance *= blanks_per_tab;
    }
}

} // namespace vimbo
