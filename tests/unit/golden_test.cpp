// How stored pictures are held against new ones.
#include "tests/support/golden.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

namespace
{

using namespace rig;

constexpr colour ground = {45, 45, 45};
constexpr colour ink = {175, 175, 175};

image sheet()
{
    return {24, 16, std::vector<colour>(std::size_t{24} * 16, ground)};
}

void draw(image &picture, int x, int y, int width, int height, colour with)
{
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column)
            picture.pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                           static_cast<std::size_t>(column)] = with;
}

image stroke(int x, int y, int width, int height, colour with = ink)
{
    image picture = sheet();
    draw(picture, x, y, width, height, with);
    return picture;
}

std::size_t blocks(const image &before, const image &after, int tolerance = panel_tolerance)
{
    return compare(before, after, tolerance).blocks.size();
}

TEST(GoldenPicture, IsTheSameAsItself)
{
    EXPECT_EQ(blocks(stroke(4, 4, 6, 1), stroke(4, 4, 6, 1)), 0U);
}

TEST(GoldenPicture, MayBeRoundedToOtherShades)
{
    image after = sheet();
    for (colour &shade : after.pixels)
        shade = {48, 42, 47};
    EXPECT_EQ(blocks(sheet(), after), 0U);
}

TEST(GoldenPicture, MayHaveOnePixelOfALineAStepAside)
{
    image after = stroke(4, 4, 12, 1);
    draw(after, 9, 4, 1, 1, ground);
    draw(after, 9, 5, 1, 1, ink);
    EXPECT_EQ(blocks(stroke(4, 4, 12, 1), after, line_tolerance), 0U);
}

TEST(GoldenPicture, MustNotChangeASurfaceEvenALittle)
{
    for (const colour change : {colour{104, 100, 100}, colour{100, 96, 100}, colour{100, 100, 104}})
        EXPECT_GT(
            blocks(stroke(4, 4, 3, 3, {100, 100, 100}), stroke(4, 4, 3, 3, change), line_tolerance),
            0U);
}

TEST(GoldenPicture, MustNotLoseAStroke)
{
    EXPECT_GT(blocks(stroke(4, 4, 1, 6), sheet()), 0U);
    EXPECT_GT(blocks(sheet(), stroke(4, 4, 1, 6)), 0U);
}

TEST(GoldenPicture, MustNotMoveAStroke)
{
    EXPECT_GT(blocks(stroke(4, 4, 6, 1), stroke(4, 5, 6, 1)), 0U);
    EXPECT_GT(blocks(stroke(4, 4, 1, 6), stroke(5, 4, 1, 6)), 0U);
}

TEST(GoldenPicture, MustNotChangeAThinLinesColour)
{
    EXPECT_GT(blocks(stroke(4, 4, 12, 1), stroke(4, 4, 12, 1, {175, 160, 175}), line_tolerance),
              0U);
}

TEST(GoldenPicture, ReportsWhereItDiffers)
{
    const picture_difference found =
        compare(stroke(21, 13, 3, 3, {40, 45, 45}), sheet(), panel_tolerance);
    ASSERT_EQ(found.blocks.size(), 6U) << "those with three of the pixels or more";
    EXPECT_EQ(found.blocks[0].x, 21);
    EXPECT_EQ(found.blocks[0].y, 11);
    const image all = side_by_side(stroke(21, 13, 3, 3, {40, 45, 45}), sheet(), found);
    EXPECT_EQ(all.width, 3 * 24 + 2 * 8);
    EXPECT_EQ(all.at(21, 13), (colour{40, 45, 45}));
    EXPECT_EQ(all.at(32 + 21, 13), ground);
    EXPECT_EQ(all.at(64 + 21, 13), (colour{220, 0, 0}));
    EXPECT_NE(all.at(64 + 18, 13), (colour{220, 0, 0}));
}

TEST(GoldenPicture, IsReadFromItsFileAsItWasWritten)
{
    const scratch_directory place;
    const image picture = stroke(1, 2, 3, 4, {1, 2, 3});
    save_png(picture, place.file("a.png"));
    const image read = load_png(place.file("a.png"));
    EXPECT_EQ(read.width, picture.width);
    EXPECT_EQ(read.pixels, picture.pixels);
    EXPECT_EQ(load_png(place.file("none.png")).width, 0);
}

} // namespace
