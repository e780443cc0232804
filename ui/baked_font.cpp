#include "ui/baked_font.hpp"

#include "ui/font.hpp"
#include "ui/nuklear_backend.hpp"

#include <cstdio>

namespace vimbo
{

namespace
{

constexpr std::size_t font_path_capacity = 4352;

void forget_baked_font(const nk_context *context, nk_font_atlas *atlas)
{
    // The backend makes a texture for each atlas and deletes only the last one.
    const auto texture = static_cast<GLuint>(context->style.font->texture.id);
    glDeleteTextures(1, &texture);
    nk_font_atlas_clear(atlas);
}

} // namespace

void bake_font(nk_context *context, baked_font &baked, const pixel_ratio &ratio)
{
    const bool first = baked.atlas == nullptr;
    if (!first)
        forget_baked_font(context, baked.atlas);
    nk_glfw3_font_stash_begin(&baked.atlas);
    char path[font_path_capacity];
    struct nk_font *font = find_font_file(path)
                               ? add_font(baked.atlas, path, glyph_pixels(font_height, ratio))
                               : nullptr;
    const float height = font != nullptr ? font_height : built_in_font_height;
    if (font == nullptr) {
        font = nk_font_atlas_add_default(baked.atlas, glyph_pixels(built_in_font_height, ratio),
                                         nullptr);
        if (first)
            std::fprintf(stderr, "no font at %s: using the built-in one\n", font_path);
    }
    nk_glfw3_font_stash_end();
    // Laid out in the window's units, however many pixels its glyphs have.
    font->handle.height = height;
    // Where a unit is a pixel, text looks as it always has.
    if (ratio != pixel_ratio{})
        put_glyphs_on_pixels(font);
    blank_control_characters(font);
    nk_style_set_font(context, &font->handle);
    baked.ratio = ratio;
}

} // namespace vimbo
