#include "ui/font.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <string_view>

namespace
{

// A font as the program bakes it, without a window.
class Font : public testing::Test
{
protected:
    Font()
    {
        nk_font_atlas_init_default(&atlas);
        nk_font_atlas_begin(&atlas);
    }

    ~Font() override
    {
        nk_font_atlas_clear(&atlas);
    }

    void bake(const char *path)
    {
        font = vimbo::add_font(&atlas, path);
        ASSERT_NE(font, nullptr);
        int width = 0;
        int height = 0;
        nk_font_atlas_bake(&atlas, &width, &height, NK_FONT_ATLAS_ALPHA8);
        nk_font_atlas_end(&atlas, nk_handle_id(0), nullptr);
    }

    const nk_font_glyph &glyph(nk_rune character) const
    {
        return *nk_font_find_glyph(font, character);
    }

    struct nk_font_atlas atlas = {};
    struct nk_font *font = nullptr;
};

TEST_F(Font, HasEveryCharacterOfTheProgramsLabels)
{
    bake(VIMBO_FONT);
    constexpr std::string_view labels =
        "Xabcdefghijklmnopqrstuvwxyz0123456789↻↩|+-!µ▁▂▃▄▅▆▇█φΨr̿ₖ₀∑₌₍₃₂₎₊₁|=/.[]()";
    for (std::size_t at = 0; at < labels.size();) {
        nk_rune character = 0;
        const int length =
            nk_utf_decode(&labels[at], &character, static_cast<int>(labels.size() - at));
        EXPECT_EQ(glyph(character).codepoint, character)
            << labels.substr(at, static_cast<std::size_t>(length)) << " would show as ?";
        at += static_cast<std::size_t>(length);
    }
}

TEST_F(Font, IsSixteenPixelsHigh)
{
    bake(VIMBO_FONT);
    EXPECT_EQ(font->handle.height, 16);
}

TEST_F(Font, ShowsControlCharactersAsBlankSpace)
{
    bake(VIMBO_FONT);
    vimbo::blank_control_characters(font);
    for (const nk_rune character : {nk_rune{'\t'}, nk_rune{'\r'}}) {
        EXPECT_EQ(glyph(character).codepoint, character);
        EXPECT_EQ(glyph(character).xadvance, glyph(' ').xadvance);
        EXPECT_EQ(glyph(character).w, glyph(' ').w);
    }
}

TEST_F(Font, IsNoneOfAFileThatIsNone)
{
    const bench::scratch_directory place;
    bench::write_file(place.file("text"), "this is no font, whatever its name says");
    bench::write_file(place.file("short"), "OT");
    bench::write_file(place.file("empty"), "");
    for (const char *name : {"text", "short", "empty", "missing"})
        EXPECT_EQ(vimbo::add_font(&atlas, place.file(name).c_str()), nullptr) << name;
}

TEST_F(Font, WithoutControlCharactersIsLeftAsItIs)
{
    struct nk_font_config config = nk_font_config(16);
    config.range = nk_font_default_glyph_ranges();
    font = nk_font_atlas_add_from_file(&atlas, VIMBO_FONT, 16, &config);
    ASSERT_NE(font, nullptr);
    int width = 0;
    int height = 0;
    nk_font_atlas_bake(&atlas, &width, &height, NK_FONT_ATLAS_ALPHA8);
    nk_font_atlas_end(&atlas, nk_handle_id(0), nullptr);
    const nk_font_glyph before = glyph('?');
    vimbo::blank_control_characters(font);
    EXPECT_EQ(glyph('?').codepoint, before.codepoint);
    EXPECT_EQ(glyph('?').w, before.w);
    EXPECT_EQ(glyph('\t').codepoint, before.codepoint) << "what has no glyph shows as this";
}

} // namespace
