// From the window's units to the framebuffer's pixels.
#include "ui/pixel_ratio.hpp"

#include "ui/nuklear.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

using namespace vimbo;

TEST(PixelRatio, IsOneWhereTheFramebufferHasTheWindowsSize)
{
    EXPECT_EQ(ratio_of(1600, 1240, 1600, 1240), (pixel_ratio{1, 1}));
}

TEST(PixelRatio, IsWhatTheScreensScaleIs)
{
    EXPECT_EQ(ratio_of(1600, 1240, 3200, 2480), (pixel_ratio{2, 2}));
    EXPECT_EQ(ratio_of(1600, 1240, 2000, 1550), (pixel_ratio{1.25F, 1.25F}));
    EXPECT_EQ(ratio_of(1600, 1240, 4800, 2480), (pixel_ratio{3, 2}));
}

TEST(PixelRatio, IsOneForAWindowWithoutASize)
{
    EXPECT_EQ(ratio_of(0, 0, 0, 0), (pixel_ratio{1, 1}));
    EXPECT_EQ(ratio_of(1600, 1240, 0, 0), (pixel_ratio{1, 1}));
    EXPECT_EQ(ratio_of(0, 0, 1600, 1240), (pixel_ratio{1, 1}));
}

TEST(PixelRatio, GivesTheFramebuffersSizeBackForTheWindowsWhateverItIs)
{
    for (const float scale : {1.0F, 1.25F, 1.5F, 1.75F, 2.0F, 3.0F})
        for (std::int32_t units = 1; units < 4000; ++units) {
            const auto pixels =
                static_cast<std::int32_t>(std::lround(static_cast<float>(units) * scale));
            const pixel_ratio ratio = ratio_of(units, units, pixels, pixels);
            ASSERT_EQ(in_pixels(units, ratio.x), pixels) << units << " units at " << scale;
        }
}

TEST(PixelRatio, ScalesARectangleAlongEachAxis)
{
    const struct nk_rect pixels = in_pixels(nk_rect(10, 20, 30, 40), {2, 1.5F});
    EXPECT_EQ(pixels.x, 20);
    EXPECT_EQ(pixels.y, 30);
    EXPECT_EQ(pixels.w, 60);
    EXPECT_EQ(pixels.h, 60);
}

TEST(PixelRatio, BakesGlyphsForTheDenserAxis)
{
    EXPECT_EQ(glyph_pixels(16, {1, 1}), 16);
    EXPECT_EQ(glyph_pixels(16, {1.25F, 1.25F}), 20);
    EXPECT_EQ(glyph_pixels(16, {2, 3}), 48);
}

} // namespace
