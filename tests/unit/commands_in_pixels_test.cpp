// Drawing commands on a screen of higher density.
#include "ui/commands_in_pixels.hpp"

#include "tests/support/drawn_canvas.hpp"
#include "ui/nuklear.hpp"
#include "ui/pixel_ratio.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace
{

using namespace vimbo;

// The commands that a window of this program's would be drawn with, in pixels.
class PixelCommands : public testing::Test
{
protected:
    ~PixelCommands() override
    {
        nk_free(&context);
    }

    void draw(const pixel_ratio &ratio, const std::function<void(nk_command_buffer *)> &draw)
    {
        rig::draw_on_canvas(context, font, draw);
        put_on_pixels(complete_draw_commands(&context), ratio);
    }

    template <typename Command>
    std::vector<Command> all(nk_command_type type)
    {
        std::vector<Command> found;
        const nk_command *command = nullptr;
        nk_foreach(command, &context)
        {
            if (command->type == type)
                found.push_back(*reinterpret_cast<const Command *>(command));
        }
        return found;
    }

    nk_user_font font = {};
    nk_context context = {};
};

constexpr struct nk_color red = {255, 0, 0, 255};

TEST_F(PixelCommands, ThatTouchStillDoAtEveryRatio)
{
    for (const float ratio : {1.25F, 1.5F, 1.6F, 2.0F, 3.0F}) {
        draw({ratio, ratio}, [](nk_command_buffer *out) {
            for (int x = 1; x < 900; x += 13)
                nk_fill_rect(out, nk_rect(static_cast<float>(x), 7, 13, 5), 4, red);
        });
        const auto shapes = all<nk_command_rect_filled>(NK_COMMAND_RECT_FILLED);
        ASSERT_EQ(shapes.size(), 70U);
        for (std::size_t i = 1; i < shapes.size(); ++i)
            ASSERT_EQ(shapes[i].x, shapes[i - 1].x + static_cast<int>(shapes[i - 1].w))
                << "at " << ratio;
        EXPECT_EQ(shapes[0].y, in_pixels(7, ratio));
        EXPECT_EQ(shapes[0].y + static_cast<int>(shapes[0].h), in_pixels(12, ratio));
        EXPECT_EQ(shapes[0].rounding, static_cast<unsigned int>(in_pixels(4, ratio)));
        nk_free(&context);
    }
    nk_init_default(&context, &font);
}

TEST_F(PixelCommands, AreLeftAsTheyAreWhereAUnitIsAPixel)
{
    constexpr float far = 16000000;
    draw({1, 1}, [](nk_command_buffer *out) { nk_stroke_line(out, far, 2, 3, 4, 1, red); });
    const auto lines = all<nk_command_line>(NK_COMMAND_LINE);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].begin.x, static_cast<int>(far));
    EXPECT_EQ(lines[0].end.y, 4);
    EXPECT_EQ(lines[0].line_thickness, 1U);
}

TEST_F(PixelCommands, AreScaledAlongEachAxis)
{
    draw({2, 3}, [this](nk_command_buffer *out) {
        nk_push_scissor(out, nk_rect(10, 20, 30, 40));
        nk_stroke_line(out, 11, 21, 31, 41, 1, red);
        nk_stroke_rect(out, nk_rect(12, 22, 5, 6), 4, 1, red);
        nk_fill_triangle(out, 11, 21, 13, 23, 15, 25, red);
        nk_draw_text(out, nk_rect(12, 24, 20, 16), "ab", 2, &font, red, red);
    });
    const auto clips = all<nk_command_scissor>(NK_COMMAND_SCISSOR);
    EXPECT_TRUE(std::ranges::any_of(clips, [](const nk_command_scissor &clip) {
        return clip.x == 20 && clip.y == 60 && clip.w == 60 && clip.h == 120;
    }));
    const auto line = all<nk_command_line>(NK_COMMAND_LINE).at(0);
    EXPECT_EQ(line.begin.x, 22);
    EXPECT_EQ(line.begin.y, 63);
    EXPECT_EQ(line.end.x, 62);
    EXPECT_EQ(line.end.y, 123);
    EXPECT_EQ(line.line_thickness, 2U);
    const auto frame = all<nk_command_rect>(NK_COMMAND_RECT).back();
    EXPECT_EQ(frame.x, 24);
    EXPECT_EQ(frame.h, 18U);
    EXPECT_EQ(frame.line_thickness, 2U);
    EXPECT_EQ(frame.rounding, 8U);
    const auto triangle = all<nk_command_triangle_filled>(NK_COMMAND_TRIANGLE_FILLED).at(0);
    EXPECT_EQ(triangle.a.x, 22);
    EXPECT_EQ(triangle.b.y, 69);
    EXPECT_EQ(triangle.c.x, 30);
    const auto text = all<nk_command_text>(NK_COMMAND_TEXT).at(0);
    EXPECT_EQ(text.x, 24);
    EXPECT_EQ(text.y, 72);
    EXPECT_EQ(text.height, 48);
}

} // namespace
