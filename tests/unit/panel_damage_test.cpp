#include "app/panel_damage.hpp"

#include "tests/support/drawn_canvas.hpp"
#include "ui/nuklear.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace
{

using vimbo::window_rect;

constexpr struct nk_color red = {255, 0, 0, 255};
constexpr struct nk_color green = {0, 255, 0, 255};

// A frame that draws what the test says, without a window.
class drawn_frame
{
public:
    explicit drawn_frame(const std::function<void(nk_command_buffer *)> &draw)
    {
        rig::draw_on_canvas(context, font, draw);
        commands = vimbo::complete_draw_commands(&context);
        listed = vimbo::list_commands(*list, commands);
    }
    ~drawn_frame()
    {
        nk_free(&context);
    }
    drawn_frame(const drawn_frame &) = delete;
    drawn_frame &operator=(const drawn_frame &) = delete;

    nk_user_font font = {};
    nk_context context = {};
    vimbo::draw_commands commands = {};
    std::unique_ptr<vimbo::command_list> list = std::make_unique<vimbo::command_list>();
    bool listed = false;
};

window_rect damage_between(const drawn_frame &before, const drawn_frame &after)
{
    EXPECT_TRUE(before.listed && after.listed);
    return vimbo::find_damage({before.commands, *before.list}, {after.commands, *after.list});
}

void expect_rect(const window_rect &rect, int left, int top, int right, int bottom)
{
    EXPECT_EQ(rect.left, left);
    EXPECT_EQ(rect.top, top);
    EXPECT_EQ(rect.right, right);
    EXPECT_EQ(rect.bottom, bottom);
}

void fill(nk_command_buffer *canvas, float x, float y, struct nk_color colour = red)
{
    nk_fill_rect(canvas, nk_rect(x, y, 10, 20), 0, colour);
}

TEST(PanelsDamage, IsEmptyBetweenFramesThatDrawTheSame)
{
    const auto draw = [](nk_command_buffer *canvas) {
        fill(canvas, 100, 100);
        fill(canvas, 300, 100);
    };
    const drawn_frame before(draw);
    const drawn_frame after(draw);
    EXPECT_TRUE(is_empty(damage_between(before, after)));
}

TEST(PanelsDamage, IsWhereTheOldAndTheNewShapeLie)
{
    const drawn_frame before([](nk_command_buffer *canvas) {
        fill(canvas, 50, 50);
        fill(canvas, 100, 100);
        fill(canvas, 600, 600);
    });
    const drawn_frame after([](nk_command_buffer *canvas) {
        fill(canvas, 50, 50);
        fill(canvas, 200, 120);
        fill(canvas, 600, 600);
    });
    expect_rect(damage_between(before, after), 99, 99, 211, 141);
}

TEST(PanelsDamage, IsOneShapeWhereOneIsAddedOrGone)
{
    const drawn_frame with([](nk_command_buffer *canvas) {
        fill(canvas, 50, 50);
        fill(canvas, 100, 100);
        fill(canvas, 600, 600);
        fill(canvas, 700, 600);
    });
    const drawn_frame without([](nk_command_buffer *canvas) {
        fill(canvas, 50, 50);
        fill(canvas, 600, 600);
        fill(canvas, 700, 600);
    });
    expect_rect(damage_between(with, without), 99, 99, 111, 121);
    expect_rect(damage_between(without, with), 99, 99, 111, 121);
}

TEST(PanelsDamage, IsAllOfManyShapesThatAreAddedOrGoneAndNothingElse)
{
    const auto frame_with = [](int more) {
        return [more](nk_command_buffer *canvas) {
            fill(canvas, 50, 50);
            for (int i = 0; i < more; ++i)
                fill(canvas, 100, static_cast<float>(100 + i));
            fill(canvas, 600, 600);
            fill(canvas, 700, 600);
            fill(canvas, 800, 600);
        };
    };
    const drawn_frame without(frame_with(0));
    for (const int more : {1, 2, 23, 24, 25, 47, 48}) {
        const drawn_frame with(frame_with(more));
        expect_rect(damage_between(with, without), 99, 99, 111, 120 + more);
        expect_rect(damage_between(without, with), 99, 99, 111, 120 + more);
    }
    const drawn_frame with_too_many(frame_with(49));
    EXPECT_EQ(damage_between(with_too_many, without).right, 811) << "it was looked on and on";
    EXPECT_EQ(damage_between(without, with_too_many).right, 811) << "it was looked on and on";
}

TEST(PanelsDamage, HoldsShapesThatCameInAnotherOrder)
{
    const drawn_frame before([](nk_command_buffer *canvas) {
        fill(canvas, 100, 100, red);
        fill(canvas, 105, 105, green);
    });
    const drawn_frame after([](nk_command_buffer *canvas) {
        fill(canvas, 105, 105, green);
        fill(canvas, 100, 100, red);
    });
    const window_rect damage = damage_between(before, after);
    EXPECT_LE(damage.left, 104) << "the shape on top is another one where they overlap";
    EXPECT_GE(damage.right, 111);
}

TEST(PanelsDamage, IsWhereAShapeIsClippedElsewise)
{
    const auto clipped_at = [](float right) {
        return [right](nk_command_buffer *canvas) {
            nk_push_scissor(canvas, nk_rect(100, 100, right - 100, 100));
            nk_fill_rect(canvas, nk_rect(90, 110, 200, 20), 0, red);
            nk_push_scissor(canvas, nk_rect(0, 0, 1000, 1000));
            fill(canvas, 600, 600);
        };
    };
    const drawn_frame before(clipped_at(150));
    const drawn_frame after(clipped_at(160));
    expect_rect(damage_between(before, after), 100, 109, 160, 131);
}

TEST(PanelsDamage, EndsWhereItsShapesAreClipped)
{
    const auto in_colour = [](struct nk_color colour) {
        return [colour](nk_command_buffer *canvas) {
            nk_push_scissor(canvas, nk_rect(100, 100, 50, 50));
            nk_fill_rect(canvas, nk_rect(90, 110, 200, 20), 0, colour);
        };
    };
    expect_rect(damage_between(drawn_frame(in_colour(red)), drawn_frame(in_colour(green))), 100,
                109, 150, 131);
}

TEST(PanelsDamage, HoldsTheGlyphsOfATextAndTheWidthOfLinesAndEdges)
{
    const auto text = [](const char *letters) {
        return [letters](nk_command_buffer *canvas) {
            static nk_user_font font = {};
            font.width = [](nk_handle /*font*/, float /*height*/, const char * /*text*/,
                            int length) { return static_cast<float>(8 * length); };
            font.height = 16;
            nk_draw_text(canvas, nk_rect(100, 100, 80, 16), letters, 3, &font, red, green);
        };
    };
    const window_rect damage = damage_between(drawn_frame(text("abc")), drawn_frame(text("abd")));
    // By as much as the text is high, as glyphs may lean out.
    expect_rect(damage, 100 - 16, 100 - 16, 180 + 16, 116 + 16);
    const auto line = [](struct nk_color colour) {
        return [colour](nk_command_buffer *canvas) {
            nk_stroke_line(canvas, 100, 100, 200, 150, 6, colour);
        };
    };
    const window_rect stroke = damage_between(drawn_frame(line(red)), drawn_frame(line(green)));
    expect_rect(stroke, 100 - 7, 100 - 7, 200 + 8, 150 + 8);
    const auto frame = [](struct nk_color colour) {
        return [colour](nk_command_buffer *canvas) {
            nk_stroke_rect(canvas, nk_rect(100, 100, 50, 40), 0, 3, colour);
        };
    };
    expect_rect(damage_between(drawn_frame(frame(red)), drawn_frame(frame(green))), 100 - 4,
                100 - 4, 150 + 4, 140 + 4);
    const auto triangle = [](struct nk_color colour) {
        return [colour](nk_command_buffer *canvas) {
            nk_fill_triangle(canvas, 150, 100, 100, 160, 200, 130, colour);
        };
    };
    expect_rect(damage_between(drawn_frame(triangle(red)), drawn_frame(triangle(green))), 99, 99,
                202, 162);
}

TEST(PanelsDamage, IsUnknownWithMoreCommandsThanTheListHolds)
{
    const auto shapes = [](int count) {
        return [count](nk_command_buffer *canvas) {
            for (int i = 0; i < count; ++i)
                fill(canvas, 100, 100);
        };
    };
    const drawn_frame few(shapes(100));
    EXPECT_TRUE(few.listed);
    EXPECT_GE(few.list->count, 100);
    EXPECT_FALSE(drawn_frame(shapes(vimbo::command_capacity + 1)).listed);
}

TEST(PanelsDamage, IsUnknownWithShapesThatNoPanelHas)
{
    EXPECT_FALSE(drawn_frame([](nk_command_buffer *canvas) {
                     nk_fill_arc(canvas, 100, 100, 30, 0, 1, red);
                 }).listed);
}

TEST(PanelsDamage, IsFoundAcrossMoreChangesThanAreLookedAheadFor)
{
    const auto row = [](int from, struct nk_color colour) {
        return [from, colour](nk_command_buffer *canvas) {
            fill(canvas, 5, 5);
            for (int i = 0; i < 200; ++i)
                fill(canvas, 300, static_cast<float>(from + i), colour);
            fill(canvas, 700, 700);
            fill(canvas, 750, 750);
        };
    };
    const window_rect damage =
        damage_between(drawn_frame(row(300, red)), drawn_frame(row(310, green)));
    expect_rect(damage, 299, 299, 311, 310 + 199 + 21);
}

TEST(PanelsDamage, IsAllThatIsLeftToDraw)
{
    drawn_frame frame([](nk_command_buffer *canvas) {
        fill(canvas, 50, 50);
        fill(canvas, 100, 100);
        fill(canvas, 600, 600);
    });
    drop_commands_beside(frame.commands, *frame.list, {95, 95, 103, 103});
    auto left = std::make_unique<vimbo::command_list>();
    ASSERT_TRUE(vimbo::list_commands(*left, frame.commands));
    ASSERT_EQ(left->count, 1);
    expect_rect(left->commands[0].bounds, 99, 99, 111, 121);
}

} // namespace
