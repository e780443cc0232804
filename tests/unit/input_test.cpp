#include "ui/input_queue.hpp"

#include "ui/nuklear.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{

using namespace vimbo;

constexpr int most_layouts = 10000; // of one test, lest it never ends

class Input : public testing::Test
{
protected:
    Input()
    {
        font.height = 16;
        font.width = [](nk_handle, float, const char *, int) { return 8.0F; };
        nk_init_default(&context, &font);
    }
    ~Input() override
    {
        nk_free(&context);
    }

    void type(const std::string &text)
    {
        for (const char c : text)
            queue_input(*queue,
                        {input_kind::character, true, false, static_cast<std::uint32_t>(c), 0, 0});
    }
    void key(nk_keys code, bool shift = false)
    {
        queue_input(*queue, {input_kind::key, true, shift, code, 0, 0});
    }
    void button(bool down, float x, float y)
    {
        queue_input(*queue, {input_kind::button, down, false, NK_BUTTON_LEFT, x, y});
    }
    void motion(float x, float y)
    {
        queue_input(*queue, {input_kind::motion, false, false, 0, x, y});
    }

    void layout()
    {
        take_input(*queue, &context);
    }
    std::string text() const
    {
        return {context.input.keyboard.text,
                static_cast<std::size_t>(context.input.keyboard.text_len)};
    }
    // Of as many layouts as it takes until nothing waits.
    std::string all_text()
    {
        std::string all;
        for (int i = 0; i < most_layouts && has_input(*queue); ++i) {
            layout();
            all += text();
        }
        return all;
    }
    bool pressed(nk_keys code) const
    {
        return nk_input_is_key_pressed(&context.input, code) != 0;
    }

    std::unique_ptr<input_queue> queue = std::make_unique<input_queue>();
    nk_context context = {};
    nk_user_font font = {};
};

TEST_F(Input, GivesOneLayoutTwoHundredCharacters)
{
    const std::string typed(200, 'k');
    type(typed);
    layout();
    EXPECT_EQ(text(), typed);
    EXPECT_FALSE(has_input(*queue));
}

TEST_F(Input, LeavesTextThatDoesNotFitForTheNextLayout)
{
    type(std::string(3000, 'k'));
    std::size_t arrived = 0;
    for (int i = 0; i < most_layouts && has_input(*queue); ++i) {
        layout();
        arrived += text().size();
    }
    EXPECT_EQ(arrived, 3000U);
}

TEST_F(Input, KeepsABackspaceBetweenTheCharactersAroundIt)
{
    type("ab");
    key(NK_KEY_BACKSPACE);
    type("c");
    layout();
    EXPECT_EQ(text(), "ab");
    EXPECT_FALSE(pressed(NK_KEY_BACKSPACE));
    layout();
    EXPECT_TRUE(pressed(NK_KEY_BACKSPACE));
    EXPECT_EQ(text(), "c");
}

TEST_F(Input, CountsEveryPressOfARepeatedKey)
{
    for (int i = 0; i < 5; ++i)
        key(NK_KEY_DEL);
    int presses = 0;
    for (int i = 0; i < most_layouts && has_input(*queue); ++i) {
        layout();
        presses += pressed(NK_KEY_DEL) ? 1 : 0;
    }
    EXPECT_EQ(presses, 5);
    layout();
    EXPECT_FALSE(pressed(NK_KEY_DEL)) << "a key is pressed in one layout only";
}

TEST_F(Input, ReportsShiftAsItWasWhenTheKeyWasPressed)
{
    key(NK_KEY_LEFT, true);
    key(NK_KEY_LEFT, false);
    layout();
    EXPECT_TRUE(context.input.keyboard.keys[NK_KEY_SHIFT].down);
    layout();
    EXPECT_FALSE(context.input.keyboard.keys[NK_KEY_SHIFT].down);
}

TEST_F(Input, CopiesOnlyAfterTheSelectionThatShiftMakes)
{
    key(NK_KEY_TEXT_START, true);
    key(NK_KEY_COPY, false);
    layout();
    EXPECT_TRUE(context.input.keyboard.keys[NK_KEY_SHIFT].down);
    EXPECT_FALSE(pressed(NK_KEY_COPY));
    layout();
    EXPECT_TRUE(pressed(NK_KEY_COPY));
}

TEST_F(Input, ShowsAClickShorterThanAFrameAsPressAndRelease)
{
    motion(10, 20);
    button(true, 10, 20);
    button(false, 10, 20);
    motion(300, 300);
    layout();
    EXPECT_EQ(context.input.mouse.pos.x, 10);
    EXPECT_FALSE(nk_input_is_mouse_down(&context.input, NK_BUTTON_LEFT));
    layout();
    EXPECT_TRUE(nk_input_is_mouse_pressed(&context.input, NK_BUTTON_LEFT));
    EXPECT_EQ(context.input.mouse.pos.x, 10);
    layout();
    EXPECT_TRUE(nk_input_is_mouse_released(&context.input, NK_BUTTON_LEFT));
    layout();
    EXPECT_EQ(context.input.mouse.pos.x, 300);
    EXPECT_FALSE(has_input(*queue));
}

TEST_F(Input, CountsAsDragWhatThePointerMovesBetweenPressAndReleaseAndNothingElse)
{
    motion(10, 20);
    layout();
    motion(50, 20);
    button(true, 50, 20);
    motion(80, 20);
    motion(150, 20);
    button(false, 150, 20);
    motion(170, 20);
    float dragged = 0;
    for (int i = 0; i < 20 && has_input(*queue); ++i) {
        layout();
        if (nk_input_is_mouse_down(&context.input, NK_BUTTON_LEFT))
            dragged += context.input.mouse.delta.x;
    }
    EXPECT_FALSE(has_input(*queue));
    EXPECT_EQ(dragged, 100);
}

TEST_F(Input, KeepsOfMotionsThatFollowEachOtherTheLast)
{
    for (const float x : {10.0F, 20.0F, 30.0F}) {
        motion(x, 20);
        EXPECT_EQ(queue->count, 1U);
    }
    button(true, 30, 20);
    motion(40, 20);
    motion(50, 20);
    EXPECT_EQ(queue->count, 3U);
    layout();
    EXPECT_EQ(context.input.mouse.pos.x, 30);
}

TEST_F(Input, LeavesAClickBehindTextForTheNextLayout)
{
    type("a");
    button(true, 10, 20);
    layout();
    EXPECT_FALSE(nk_input_is_mouse_down(&context.input, NK_BUTTON_LEFT));
    layout();
    EXPECT_TRUE(nk_input_is_mouse_down(&context.input, NK_BUTTON_LEFT));
}

TEST_F(Input, AddsWheelNotchesUp)
{
    queue_input(*queue, {input_kind::scroll, false, false, 0, 0, 1});
    queue_input(*queue, {input_kind::scroll, false, false, 0, 0, 1});
    layout();
    EXPECT_EQ(context.input.mouse.scroll_delta.y, 2);
    layout();
    EXPECT_EQ(context.input.mouse.scroll_delta.y, 0);
}

TEST_F(Input, TellsShiftAndControlAsTheyWereAtTheKeyTheButtonAndTheWheel)
{
    const auto held = [this](nk_keys modifier) {
        return context.input.keyboard.keys[modifier].down != nk_false;
    };
    queue_input(*queue, {input_kind::scroll, false, true, 0, 0, 1});
    queue_input(*queue, {input_kind::scroll, false, false, 0, 0, 1});
    queue_input(*queue, {input_kind::button, true, true, NK_BUTTON_LEFT, 1, 1});
    queue_input(*queue, {input_kind::key, true, false, NK_KEY_BACKSPACE, 0, 0, true});
    queue_input(*queue, {input_kind::key, true, false, NK_KEY_BACKSPACE, 0, 0, false});
    layout();
    EXPECT_TRUE(held(NK_KEY_SHIFT));
    EXPECT_EQ(context.input.mouse.scroll_delta.y, 1);
    layout();
    EXPECT_FALSE(held(NK_KEY_SHIFT));
    layout();
    EXPECT_TRUE(held(NK_KEY_SHIFT));
    EXPECT_TRUE(nk_input_is_mouse_pressed(&context.input, NK_BUTTON_LEFT));
    layout();
    EXPECT_TRUE(held(NK_KEY_CTRL));
    EXPECT_FALSE(held(NK_KEY_SHIFT));
    layout();
    EXPECT_FALSE(held(NK_KEY_CTRL));
    EXPECT_TRUE(pressed(NK_KEY_BACKSPACE));
}

TEST_F(Input, TellsAPressSoonAfterAnotherByTheDoubleButton)
{
    button(true, 10, 20);
    button(false, 10, 20);
    queue_input(*queue, {input_kind::button, true, false, NK_BUTTON_LEFT, 10, 20, false, true});
    button(false, 10, 20);
    const bool doubled[] = {false, false, true, false};
    for (const bool wanted : doubled) {
        layout();
        EXPECT_EQ(nk_input_is_mouse_pressed(&context.input, NK_BUTTON_DOUBLE) != 0, wanted);
    }
    EXPECT_FALSE(nk_input_is_mouse_down(&context.input, NK_BUTTON_DOUBLE));
}

TEST_F(Input, GoesToTheEndsOfWhatScrollsByTheEndsOfALineOrTheText)
{
    for (const auto &[code, end] : {std::pair(NK_KEY_TEXT_START, NK_KEY_SCROLL_START),
                                    std::pair(NK_KEY_TEXT_LINE_START, NK_KEY_SCROLL_START),
                                    std::pair(NK_KEY_TEXT_END, NK_KEY_SCROLL_END),
                                    std::pair(NK_KEY_TEXT_LINE_END, NK_KEY_SCROLL_END)}) {
        key(code);
        layout();
        EXPECT_TRUE(pressed(end)) << code;
    }
}

TEST_F(Input, LosesOnlyWhatIsBeyondItsCapacity)
{
    // In no order of the alphabet's length, so that what is missing shows.
    std::string typed;
    for (std::size_t i = 0; i < input_capacity + 10; ++i)
        typed += static_cast<char>('a' + i * i % 23);
    type(typed);
    EXPECT_EQ(queue->count, input_capacity);
    const std::string arrived = all_text();
    EXPECT_EQ(arrived.size(), input_capacity);
    EXPECT_TRUE(typed.starts_with(arrived)) << "what arrived is not what was typed first";
    type("after it");
    EXPECT_EQ(all_text(), "after it") << "the queue takes input again";
}

TEST_F(Input, LeavesTextBehindEnterForTheNextLayout)
{
    type("a");
    key(NK_KEY_ENTER);
    type("b");
    layout();
    EXPECT_EQ(text(), "a");
    EXPECT_TRUE(pressed(NK_KEY_ENTER));
    layout();
    EXPECT_EQ(text(), "b");
    EXPECT_FALSE(pressed(NK_KEY_ENTER));
}

TEST_F(Input, HoldsNoKeyDownInTheLayoutAfter)
{
    key(NK_KEY_BACKSPACE, true);
    layout();
    EXPECT_TRUE(context.input.keyboard.keys[NK_KEY_BACKSPACE].down);
    layout();
    EXPECT_FALSE(context.input.keyboard.keys[NK_KEY_BACKSPACE].down);
    EXPECT_FALSE(context.input.keyboard.keys[NK_KEY_SHIFT].down);
}

TEST_F(Input, ScrollsToTheEndsWithTheKeysThatGoThere)
{
    key(NK_KEY_TEXT_START);
    layout();
    EXPECT_TRUE(pressed(NK_KEY_TEXT_START));
    EXPECT_TRUE(pressed(NK_KEY_SCROLL_START)) << "what scrolls stays where it was";
    EXPECT_FALSE(pressed(NK_KEY_SCROLL_END));
    key(NK_KEY_TEXT_END);
    layout();
    EXPECT_TRUE(pressed(NK_KEY_TEXT_END));
    EXPECT_TRUE(pressed(NK_KEY_SCROLL_END)) << "what scrolls stays where it was";
    EXPECT_FALSE(pressed(NK_KEY_SCROLL_START));
}

} // namespace
