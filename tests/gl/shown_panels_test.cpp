#include "app/shown_panels.hpp"

#include "tests/gl/gl_rig.hpp"
#include "ui/nuklear_backend.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{

using namespace rig;

class ShownPanels : public testing::Test
{
protected:
    ShownPanels()
    {
        nk_font_atlas *atlas = nullptr;
        nk_glfw3_font_stash_begin(&atlas);
        nk_glfw3_font_stash_end();
        frame_state.context = context;
        frame_state.window_width = window_width;
        frame_state.window_height = window_height;
    }
    ~ShownPanels() override
    {
        vimbo::delete_offscreen(panels->copy);
        nk_glfw3_shutdown();
    }

    void show(const std::string &text, const struct nk_rect &bounds = nk_rect(0, 0, 300, 200))
    {
        nk_glfw3_new_frame();
        nk_window_set_bounds(context, "panel", bounds);
        if (nk_begin(context, "panel", bounds, NK_WINDOW_BORDER) != 0) {
            nk_layout_row_dynamic(context, 20, 1);
            nk_label(context, text.c_str(), NK_TEXT_LEFT);
        }
        nk_end(context);
        vimbo::render_panels(frame_state, *panels);
    }

    // Counted from the window's upper left corner.
    static colour pixel_at(int x, int y)
    {
        unsigned char pixel[4] = {};
        glReadPixels(x, window_height - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
        return {pixel[0], pixel[1], pixel[2]};
    }

    static constexpr colour grey = {179, 179, 179}; // where no panel is
    nk_context *context = nk_glfw3_init(glfwGetCurrentContext(), NK_GLFW3_DEFAULT);
    vimbo::frame_state frame_state = {};
    std::unique_ptr<vimbo::shown_panels> panels = std::make_unique<vimbo::shown_panels>();
};

TEST_F(ShownPanels, AllocateNoMemoryForEachFrameThatDiffers)
{
    const auto held = [&] { return context->draw_list.buffer->memory.size; };
    show("first");
    const nk_size first = held();
    EXPECT_GT(first, 0U);
    for (int i = 0; i < 300; ++i)
        show(std::to_string(i));
    EXPECT_EQ(held(), first) << "draw commands of earlier frames are kept";
}

TEST_F(ShownPanels, LieOverOneColourWhateverTheWindowHeldBefore)
{
    for (int i = 0; i < 3; ++i) {
        glClearColor(1, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        show(std::to_string(i));
        EXPECT_TRUE(alike(pixel_at(450, 420), grey)) << "frame " << i;
    }
}

TEST_F(ShownPanels, AreDrawnOnlyWhereTheyChange)
{
    constexpr colour red = {255, 0, 0};
    show("a text");
    show("a text");
    ASSERT_TRUE(panels->copied);
    glBindFramebuffer(GL_FRAMEBUFFER, panels->copy.framebuffer);
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    show("a text");
    EXPECT_TRUE(alike(pixel_at(20, 20), red)) << "the same panel was drawn again";
    show("another text");
    EXPECT_TRUE(alike(pixel_at(450, 420), red)) << "what is beside the panel was drawn again";
    EXPECT_FALSE(alike(pixel_at(20, 20), red)) << "the changed panel was not drawn";
}

TEST_F(ShownPanels, LeaveNothingWhereAPanelWasLarger)
{
    show("text", nk_rect(0, 0, 160, 120));
    show("text", nk_rect(0, 0, 160, 120));
    EXPECT_FALSE(alike(pixel_at(140, 100), grey)) << "no panel";
    show("text", nk_rect(0, 0, 100, 80));
    EXPECT_FALSE(alike(pixel_at(90, 70), grey)) << "no panel";
    EXPECT_TRUE(alike(pixel_at(140, 100), grey)) << "the larger panel's corner is still there";
}

TEST_F(ShownPanels, AreDrawnEachTimeWhenTheirCommandsDoNotFitIntoTheCopy)
{
    const auto show_rectangles = [&](int count, colour wanted) {
        nk_glfw3_new_frame();
        if (nk_begin(context, "panel", nk_rect(0, 0, 300, 200), NK_WINDOW_NO_SCROLLBAR) != 0) {
            nk_command_buffer *out = nk_window_get_canvas(context);
            for (int i = 0; i < count; ++i)
                nk_fill_rect(out, nk_rect(20, 20, 100, 100), 0,
                             nk_rgb(wanted.red, wanted.green, wanted.blue));
        }
        nk_end(context);
        vimbo::render_panels(frame_state, *panels);
        return pixel_at(60, 60);
    };
    constexpr colour red = {200, 0, 0};
    constexpr colour green = {0, 200, 0};
    constexpr int too_many = 30000;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(alike(show_rectangles(10, red), red)) << "few, frame " << i;
    EXPECT_TRUE(panels->copied);
    EXPECT_TRUE(alike(show_rectangles(too_many, green), green)) << "the copy is shown";
    EXPECT_FALSE(panels->copied);
    EXPECT_EQ(panels->last.size, 0U) << "what does not fit was noted";
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(alike(show_rectangles(too_many, red), red)) << "many, frame " << i;
    EXPECT_FALSE(panels->copied) << "what does not fit is taken for what is shown";
}

} // namespace
