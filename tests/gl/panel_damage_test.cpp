// The panels drawn as far as they have changed against the same drawn as a whole,
// pixel by pixel, and what of them is taken for changed.
#include "app/panel_damage.hpp"

#include "app/app_state.hpp"
#include "app/main_panel.hpp"
#include "tests/gl/gl_rig.hpp"
#include "tests/support/point.hpp"
#include "tests/support/scratch.hpp"
#include "ui/flags.hpp"
#include "ui/input_queue.hpp"
#include "ui/nuklear_backend.hpp"
#include "ui/window_events.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace rig;

using pixels = std::vector<unsigned char>;

constexpr int tall = 1160; // enough for all panels

class PanelDamage : public testing::Test
{
protected:
    PanelDamage()
    {
        resize(tall);
        nk_font_atlas *atlas = nullptr;
        nk_glfw3_font_stash_begin(&atlas);
        nk_glfw3_font_stash_end();
        app->frame.context = context;
        app->frame.window_width = window_width;
        app->frame.window_height = tall;
        for (const char *name : {"src/a.txt", "src/b.txt", "src/sub/c.txt"})
            write_file(place.file(name), std::string("text of ") + name + "\nand more of it\n");
        sources = place.file("src");
        app->bar.source_directory = sources.c_str();
        vimbo::initialise_panels(*app);
    }
    ~PanelDamage() override
    {
        vimbo::delete_offscreen(shown->copy);
        vimbo::delete_offscreen(reference->copy);
        nk_glfw3_shutdown();
        resize(window_height);
    }

    static void resize(int height)
    {
        GLFWwindow *window = glfwGetCurrentContext();
        glfwSetWindowSize(window, window_width, height);
        int width = 0;
        for (int now = 0; now != height; glfwGetFramebufferSize(window, &width, &now))
            glfwWaitEventsTimeout(0.01);
        glfwSwapBuffers(window);
        glViewport(0, 0, window_width, height);
    }

    // As the program does: all that waits is taken, only the last layout is shown.
    void lay_out()
    {
        vimbo::begin_backend_frame(context);
        vimbo::reset_frame_flags(app->frame);
        vimbo::take_input(app->input, context);
        while (vimbo::has_input(app->input)) {
            vimbo::main_panel(*app);
            vimbo::complete_draw_commands(context);
            nk_clear(context);
            vimbo::take_input(app->input, context);
        }
        vimbo::main_panel(*app);
        const vimbo::draw_commands commands = vimbo::complete_draw_commands(context);
        laid_out.assign(commands.memory.begin(), commands.memory.end());
    }

    pixels shown_pixels()
    {
        pixels all(std::size_t{window_width} * tall * 4);
        glReadPixels(0, 0, window_width, tall, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
        return all;
    }

    // Ends a layout the way the program does.
    pixels render()
    {
        glClearColor(1, 0, 1, 1); // what the window holds after a swap is anything
        glClear(GL_COLOR_BUFFER_BIT);
        vimbo::render_panels(app->frame, *shown);
        return shown_pixels();
    }

    // Ends a layout with everything drawn.
    pixels render_whole()
    {
        vimbo::forget_panels(*reference);
        vimbo::render_panels(app->frame, *reference);
        return shown_pixels();
    }

    // False when the panels have changed without input between.
    bool expect_whole_picture(const std::string &when)
    {
        lay_out();
        const std::vector<char> drawn_commands = laid_out;
        const pixels drawn = render();
        app->frame.input_only = true; // the replay stands
        lay_out();
        app->frame.input_only = false;
        const bool comparable = drawn_commands == laid_out;
        const pixels wanted = render_whole();
        if (!comparable)
            return false;
        int differing = 0;
        for (std::size_t i = 0; i < drawn.size(); i += 4)
            differing += std::equal(&drawn[i], &drawn[i] + 4, &wanted[i]) ? 0 : 1;
        EXPECT_EQ(differing, 0) << when;
        return true;
    }

    void queue(vimbo::input_kind kind, bool down, std::uint32_t code, point at)
    {
        vimbo::queue_input(app->input, {.kind = kind,
                                        .down = down,
                                        .shift = false,
                                        .code = code,
                                        .x = static_cast<float>(at.x),
                                        .y = static_cast<float>(at.y)});
    }

    void move(point to)
    {
        queue(vimbo::input_kind::motion, false, 0, to);
        pointer = to;
    }

    void click()
    {
        queue(vimbo::input_kind::button, true, NK_BUTTON_LEFT, pointer);
        queue(vimbo::input_kind::button, false, NK_BUTTON_LEFT, pointer);
    }

    void type(char32_t character)
    {
        queue(vimbo::input_kind::character, false, character, pointer);
    }

    // How much of the window the last frame's damage would have been.
    vimbo::window_rect damage_between(const std::vector<char> &before_memory,
                                      std::size_t before_first)
    {
        const vimbo::draw_commands before = {
            std::span(const_cast<char *>(before_memory.data()), before_memory.size()),
            before_first};
        const vimbo::draw_commands after = vimbo::complete_draw_commands(context);
        const auto before_list = std::make_unique<vimbo::command_list>();
        const auto after_list = std::make_unique<vimbo::command_list>();
        EXPECT_TRUE(vimbo::list_commands(*before_list, before));
        EXPECT_TRUE(vimbo::list_commands(*after_list, after));
        return vimbo::find_damage({before, *before_list}, {after, *after_list});
    }

    const scratch_directory place;
    std::string sources;
    nk_context *context = nk_glfw3_init(glfwGetCurrentContext(), NK_GLFW3_DEFAULT);
    std::unique_ptr<vimbo::app_state> app = std::make_unique<vimbo::app_state>();
    std::unique_ptr<vimbo::shown_panels> shown = std::make_unique<vimbo::shown_panels>();
    std::unique_ptr<vimbo::shown_panels> reference = std::make_unique<vimbo::shown_panels>();
    std::vector<char> laid_out;
    point pointer = {0, 0};
};

class random_operator
{
public:
    explicit random_operator(unsigned int seed) : random(seed) {}
    int up_to(int limit)
    {
        return static_cast<int>(random() % static_cast<unsigned int>(limit));
    }
    bool once_in(int times)
    {
        return up_to(times) == 0;
    }

private:
    std::mt19937 random;
};

TEST_F(PanelDamage, DrawnAloneGivesTheWholePictureOverALongRandomSession)
{
    random_operator hand(21);
    constexpr std::uint32_t panels =
        vimbo::ui_flag::bottom_shown | vimbo::ui_flag::stats_shown | vimbo::ui_flag::preview_shown;
    app->frame.ui_flags = panels;
    constexpr int frames = 300;
    int compared = 0;
    for (int i = 0; i < frames; ++i) {
        // Nothing is pressed where a tool would be started.
        const bool in_the_bar = hand.once_in(3);
        if (hand.once_in(2))
            move({hand.up_to(window_width), hand.up_to(tall)});
        if (hand.once_in(4)) {
            move(in_the_bar ? point{40 + hand.up_to(500), 5 + hand.up_to(30)}
                            : point{10 + hand.up_to(250), 60 + hand.up_to(440)});
            click();
        }
        if (hand.once_in(3))
            type(static_cast<char32_t>('a' + hand.up_to(26)));
        if (hand.once_in(9))
            queue(vimbo::input_kind::key, true, hand.once_in(2) ? NK_KEY_ENTER : NK_KEY_BACKSPACE,
                  pointer);
        if (hand.once_in(20))
            queue(vimbo::input_kind::scroll, false, 0, {0, hand.up_to(3) - 1});
        if (hand.once_in(6))
            app->preview.replay_position = static_cast<std::size_t>(hand.up_to(256));
        if (hand.once_in(10))
            app->statistics.run.stats_locality[hand.up_to(32)] =
                static_cast<float>(hand.up_to(100)) / 100;
        if (hand.once_in(40))
            app->statistics.stats_chart = hand.up_to(3);
        if (hand.once_in(50))
            app->frame.ui_flags ^= panels & (1U << hand.up_to(8));
        compared += expect_whole_picture("frame " + std::to_string(i)) ? 1 : 0;
        if (HasFailure())
            return;
    }
    EXPECT_GT(compared, frames / 2);
}

TEST_F(PanelDamage, OfAHoveredButtonIsTheButton)
{
    move({300, 300});
    lay_out();
    render();
    lay_out();
    const std::vector<char> before = laid_out;
    const std::size_t first = vimbo::complete_draw_commands(context).first;
    render();
    move({20, 20}); // "X"
    lay_out();
    const vimbo::window_rect damage = damage_between(before, first);
    EXPECT_FALSE(vimbo::is_empty(damage));
    EXPECT_LE(damage.left, 20);
    EXPECT_GE(damage.right, 20);
    EXPECT_LT(damage.right - damage.left, 100);
    EXPECT_LT(damage.bottom - damage.top, 80);
    render();
}

TEST_F(PanelDamage, OfATypedCharacterIsItsLine)
{
    move({60, 100});
    click();
    lay_out();
    render();
    lay_out();
    render();
    for (const char32_t character : U"first line") {
        if (character != 0)
            type(character);
        lay_out();
        render();
    }
    lay_out();
    const std::vector<char> before = laid_out;
    const std::size_t first = vimbo::complete_draw_commands(context).first;
    render();
    type('x');
    lay_out();
    const vimbo::window_rect damage = damage_between(before, first);
    EXPECT_FALSE(vimbo::is_empty(damage));
    EXPECT_LT(damage.bottom - damage.top, 120);
    render();
}

TEST_F(PanelDamage, OfTheSameLayoutIsEmpty)
{
    lay_out();
    render();
    lay_out();
    const std::vector<char> before = laid_out;
    const std::size_t first = vimbo::complete_draw_commands(context).first;
    render();
    lay_out();
    EXPECT_TRUE(vimbo::is_empty(damage_between(before, first)));
    render();
}

} // namespace
