// The main loop in the test's own window, frame by frame: what is queued between two
// frames, and what the next one shows. Waiting takes no time, and the clock stands
// unless a test moves it.
#include "app/main_loop.hpp"

#include "app/app_state.hpp"
#include "app/main_panel.hpp"
#include "mosaic/load_mosaic.hpp"
#include "platform/commands.hpp"
#include "render/path_program.hpp"
#include "tests/gl/gl_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/point.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"
#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"
#include "ui/nuklear_backend.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace
{

std::function<void()> on_swap;
std::vector<double> waits;
double clock_now;
double clock_step; // with each look at it

} // namespace

// The linker puts these in the place of GLFW's, by these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void __real_glfwSwapBuffers(GLFWwindow *window);
double __real_glfwGetTime();
void __real_glfwWaitEventsTimeout(double timeout);

void __wrap_glfwSwapBuffers(GLFWwindow *window)
{
    if (on_swap)
        on_swap();
    __real_glfwSwapBuffers(window);
}

double __wrap_glfwGetTime()
{
    clock_now += clock_step;
    return clock_now;
}

void __wrap_glfwWaitEventsTimeout(double timeout)
{
    waits.push_back(timeout);
    clock_now += timeout;
    glfwPollEvents();
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace
{

using namespace rig;
using vimbo::has_flag;
using vimbo::input_kind;

class MainLoop : public testing::Test
{
protected:
    MainLoop()
    {
        waits.clear();
        clock_now = 0;
        clock_step = 0;
        app->frame.context = nk_glfw3_init(window, NK_GLFW3_DEFAULT);
        testing::internal::CaptureStderr(); // whether there is a font does not count here
        vimbo::bake_font(app->frame.context, app->font, app->frame.ratio);
        testing::internal::GetCapturedStderr();
        app->path_program = vimbo::build_path_program();
        app->bar.source_directory = sources.c_str();
        vimbo::set_text(app->mosaic.tray_directory, place.path().string());
        glfwSetWindowShouldClose(window, GLFW_FALSE);
    }
    ~MainLoop() override
    {
        on_swap = nullptr;
        vimbo::delete_offscreen(app->picture.shown.target);
        vimbo::delete_offscreen(app->picture.next.target);
        vimbo::delete_offscreen(app->panels.copy);
        vimbo::set_text(app->mosaic.mosaic_path, "");
        vimbo::load_mosaic(app->mosaic);
        glUseProgram(0);
        glDeleteProgram(app->path_program);
        nk_glfw3_shutdown();
        glfwSetWindowSize(window, window_width, window_height);
    }

    // A mosaic of 200 marks all over the tray.
    void write_marks() const
    {
        constexpr int count = 200;
        std::vector<vimbo::path_vertex> points;
        points.reserve(count);
        for (int i = 0; i < count; ++i)
            points.push_back({i % 2 == 0 ? -9999999 : 9999999, (i - 100) * 100000 | 1});
        std::filesystem::create_directory(place.file("_mosaics"));
        write_file(place.file("_mosaics/0.mmv"), mosaic_bytes(points));
    }

    // In a window that is high enough for it.
    void show_lower_row()
    {
        glfwSetWindowSize(window, window_width, 1240);
        app->frame.ui_flags |= vimbo::ui_flag::bottom_shown;
    }

    // Frames, each of which is looked at before it is shown, until `look` says that
    // they are enough. What it queues is the next frame's input.
    void run(const std::function<bool(int frame)> &look)
    {
        constexpr int most = 1000;
        on_swap = [&] {
            if (look(frames) || frames == most)
                glfwSetWindowShouldClose(window, GLFW_TRUE);
            ++frames;
        };
        vimbo::run_main_loop(window, *app);
        EXPECT_LT(frames, most) << "what was waited for never came";
    }
    void run_frames(int count)
    {
        run([&](int frame) { return frame + 1 >= count; });
    }

    void click(point at)
    {
        const auto x = static_cast<float>(at.x);
        const auto y = static_cast<float>(at.y);
        vimbo::queue_input(app->input, {input_kind::motion, false, false, 0, x, y});
        for (const bool down : {true, false})
            vimbo::queue_input(app->input, {input_kind::button, down, false, NK_BUTTON_LEFT, x, y});
    }
    // So many keys as take a layout each.
    void press_keys(int count)
    {
        for (int i = 0; i < count; ++i)
            vimbo::queue_input(app->input, {input_kind::key, true, false, NK_KEY_LEFT, 0, 0});
    }

    bool shows(std::uint32_t ui_flag) const
    {
        return has_flag(app->frame.ui_flags, ui_flag);
    }

    // How many pixels of the frame have this colour.
    static int count(colour wanted)
    {
        std::vector<unsigned char> all(std::size_t{window_width} * window_height * 4);
        glReadPixels(0, 0, window_width, window_height, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
        int found = 0;
        for (std::size_t i = 0; i < all.size(); i += 4)
            found += alike({all[i], all[i + 1], all[i + 2]}, wanted) ? 1 : 0;
        return found;
    }

    // What is kept of the panels is no longer what they look like: a frame that comes
    // from there shows it.
    void spoil_copy() const
    {
        glBindFramebuffer(GL_FRAMEBUFFER, app->panels.copy.framebuffer);
        glClearColor(1, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }

    static constexpr colour spoilt = {255, 0, 255};
    static constexpr point quit_button = {24, 24};
    // The "-" below the editor while it fills the window.
    static constexpr point bottom_toggle = {window_width / 2, window_height - 40};

    const scratch_directory place;
    const std::string sources = place.path().string();
    GLFWwindow *window = glfwGetCurrentContext();
    std::unique_ptr<vimbo::app_state> app = std::make_unique<vimbo::app_state>();
    int frames = 0;
};

TEST_F(MainLoop, ShowsTheFrameOfTheQuitButtonBeforeItEnds)
{
    bool pressed_frame_shown = false;
    run([&](int frame) {
        if (frame == 2)
            click(quit_button);
        pressed_frame_shown = has_flag(app->frame.frame_flags, vimbo::frame_flag::quit);
        return frame > 10;
    });
    EXPECT_LT(frames, 10) << "the press did not end it";
    EXPECT_TRUE(pressed_frame_shown) << "the frame in which the button was pressed is missing";
}

TEST_F(MainLoop, BakesTheFontAnewWhereTheWindowsDensityIsAnother)
{
    testing::internal::CaptureStderr(); // as above
    vimbo::bake_font(app->frame.context, app->font, {2, 2});
    run_frames(1);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(app->font.ratio, vimbo::pixel_ratio{}) << "a dense font in a window of pixels";
}

TEST_F(MainLoop, WaitsNoLongerThanAThirtiethOfASecond)
{
    run_frames(20);
    ASSERT_EQ(waits.size(), 20U) << "one wait a frame";
    for (const double wait : waits) {
        EXPECT_LE(wait, 1.0 / 30 + 1e-9);
        EXPECT_GE(wait, 1.0 / 60) << "it hardly waits at all";
    }
}

TEST_F(MainLoop, WaitsForWhatIsLeftOfTheFramesTime)
{
    constexpr double work = 0.02;
    run([&](int frame) {
        clock_now += frame == 5 ? 1.0 : work;
        return frame == 9;
    });
    ASSERT_EQ(waits.size(), 9U) << "the frame after the one of a second waits as well";
    for (std::size_t i = 1; i < waits.size(); ++i)
        EXPECT_NEAR(waits[i], 1.0 / 30 - work, 1e-6) << "wait " << i;
}

TEST_F(MainLoop, TakesAllInputOfAFrameInThatFrame)
{
    run([&](int frame) {
        if (frame == 2) {
            click(bottom_toggle);
            press_keys(3);
        }
        if (frame == 3) {
            EXPECT_TRUE(shows(vimbo::ui_flag::bottom_shown)) << "the click is not taken yet";
            EXPECT_FALSE(vimbo::has_input(app->input)) << "input was left for the next frame";
        }
        return frame == 3;
    });
}

TEST_F(MainLoop, LeavesInputToTheNextFrameWhenItsTimeIsOver)
{
    run([&](int frame) {
        if (frame == 2) {
            press_keys(5);
            clock_step = 1.0 / 60; // a look at it before, and one after each layout
        }
        if (frame == 3) {
            EXPECT_TRUE(vimbo::has_input(app->input)) << "a frame took far more than its time";
        }
        return frame > 3 && !vimbo::has_input(app->input);
    });
    EXPECT_LE(frames, 8);
}

TEST_F(MainLoop, GrowsTheProgressOnceAFrameHoweverManyLayoutsItTakes)
{
    show_lower_row();
    app->evaluation.eval_job.pipe = stdin; // something runs
    std::vector<std::size_t> lengths;
    run([&](int frame) {
        lengths.push_back(vimbo::text_length(app->evaluation.eval_text));
        press_keys(4);
        return frame == 5;
    });
    app->evaluation.eval_job.pipe = nullptr;
    for (std::size_t i = 1; i < lengths.size(); ++i)
        EXPECT_EQ(lengths[i], lengths[i - 1] + 1) << "dots in frame " << i;
}

std::atomic<bool> reader_may_end;

TEST_F(MainLoop, TurnsTheSpinnerOnceAFrameHoweverManyLayoutsItTakes)
{
    app->frame.ui_flags |= vimbo::ui_flag::stats_shown;
    reader_may_end = false;
    const auto reader = [](void * /*stream*/) -> void * {
        static float values[50];
        while (!reader_may_end)
            usleep(1000);
        return values;
    };
    ASSERT_TRUE(vimbo::start_job_reader(app->statistics.run.stats_job, reader, app->frame.ui_flags,
                                        vimbo::ui_flag::stats_running));
    std::vector<std::uint32_t> turns;
    run([&](int frame) {
        if (frame < 6)
            turns.push_back(app->statistics.stats_spinner);
        press_keys(4);
        reader_may_end = frame >= 5;
        return frame >= 5 && !shows(vimbo::ui_flag::stats_running);
    });
    for (std::size_t i = 2; i < turns.size(); ++i)
        EXPECT_EQ(turns[i], turns[i - 1] + 1) << "steps in frame " << i;
}

TEST_F(MainLoop, LoadsTheMosaicBeforeTheFrameDrawsIt)
{
    write_marks();
    show_lower_row();
    app->frame.ui_flags |= vimbo::ui_flag::preview_shown;
    int marks = 0;
    run([&](int /*frame*/) {
        EXPECT_EQ(app->mosaic.mosaic_vertex_count, 201) << "the first frame has no mosaic";
        marks = count(mark);
        return true;
    });
    EXPECT_GT(marks, 100) << "the first frame is drawn without the mosaic";
}

TEST_F(MainLoop, DrawsOnAtAPictureThatIsNotWholeInsteadOfWaiting)
{
    write_marks();
    show_lower_row();
    app->frame.ui_flags |= vimbo::ui_flag::preview_shown;
    app->picture.pace.vertices_per_second = 1; // nothing fits into a frame
    clock_step = 0.001;
    bool was_unfinished = false;
    std::size_t waited = 0;
    run([&](int frame) {
        const bool unfinished = vimbo::is_unfinished(app->picture);
        was_unfinished = was_unfinished || unfinished;
        waited = unfinished ? waits.size() : waited;
        return frame > 2 && !unfinished;
    });
    EXPECT_TRUE(was_unfinished) << "the picture fitted into a frame";
    EXPECT_LE(waited, 1U) << "it waits before the picture is whole";
    EXPECT_GT(count(mark), 100);
}

TEST_F(MainLoop, DrawsSlicesBetweenTwoFramesForATwentyFifthOfASecond)
{
    write_marks();
    show_lower_row();
    app->frame.ui_flags |= vimbo::ui_flag::preview_shown;
    // What is left of the picture at each frame, where a slice is sixteen vertices and
    // takes so long.
    const auto left_at_frames = [&](double slice) {
        app->picture.pace.vertices_per_second = 1; // nothing fits into a frame
        app->picture.pass_pace.slice_vertices = 1;
        app->preview.zoom /= 2; // another picture
        clock_step = slice;
        frames = 0;
        glfwSetWindowShouldClose(window, GLFW_FALSE);
        std::vector<std::int32_t> left;
        run([&](int frame) {
            if (frame > 0)
                left.push_back(app->picture.pass.undrawn);
            return frame > 0 && !vimbo::is_unfinished(app->picture);
        });
        return left;
    };
    EXPECT_EQ(left_at_frames(0.001), (std::vector<std::int32_t>{0}));
    EXPECT_EQ(left_at_frames(0.015), (std::vector<std::int32_t>{176, 128, 80, 32, 0}));
    EXPECT_EQ(left_at_frames(0.03), (std::vector<std::int32_t>{192, 160, 128, 96, 64, 32, 0}));
}

TEST_F(MainLoop, DrawsAnExposedWindowAnew)
{
    run([&](int frame) {
        switch (frame) {
        case 3:
            EXPECT_TRUE(app->panels.copied) << "three frames alike";
            spoil_copy();
            break;
        case 4:
            EXPECT_GT(count(spoilt), 1000) << "the frame did not come from the copy";
            app->input.exposed = true;
            break;
        default:
            break;
        }
        if (frame > 4) {
            EXPECT_EQ(count(spoilt), 0) << "frame " << frame << " shows the copy, exposed or not";
        }
        return frame == 6;
    });
    EXPECT_FALSE(app->input.exposed);
}

TEST_F(MainLoop, ForgetsAListThatClosesBetweenTheLayoutsOfAFrame)
{
    write_file(place.file("a.txt"), "text");
    constexpr point source_picker = {250, 24};
    constexpr point elsewhere = {550, 300};
    run([&](int frame) {
        switch (frame) {
        case 2:
            click(source_picker);
            break;
        case 4:
            EXPECT_GT(app->panels.popup.w, 0) << "the click opened no list";
            // Open in the frame's first layouts, which nobody sees, and closed in its
            // last: left standing, it leads that one's commands another way.
            press_keys(3);
            click(elsewhere);
            break;
        case 5:
            spoil_copy();
            break;
        case 6:
            EXPECT_EQ(app->panels.popup.w, 0) << "the list is still drawn";
            EXPECT_GT(count(spoilt), 1000)
                << "drawn anew: frame 5 had other commands, though nothing has changed since";
            break;
        default:
            break;
        }
        return frame == 6;
    });
}

TEST_F(MainLoop, CollectsCommandsThatWereReleased)
{
    const scratch_directory signs;
    const std::size_t others = children_of(getpid()); // what the display takes
    FILE *stream = vimbo::open_command(stub("await " + signs.file("go")).c_str());
    ASSERT_NE(stream, nullptr);
    vimbo::release_command(stream);
    ASSERT_EQ(children_of(getpid()), others + 1);
    write_file(signs.file("go"), "");
    const auto start = std::chrono::steady_clock::now();
    run([&](int /*frame*/) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return children_of(getpid()) == others ||
               std::chrono::steady_clock::now() - start > std::chrono::seconds(8);
    });
    EXPECT_EQ(children_of(getpid()), others) << "an ended command is left as a zombie";
}

} // namespace
