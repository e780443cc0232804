// The Evaluation panel: what it offers, the commands that it starts, and how it
// tells their end.
#include "tests/support/child_watch.hpp"
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <regex>

namespace
{

using namespace rig;
using vimbo::has_flag;

class EvaluationPanel : public testing::Test
{
protected:
    EvaluationPanel()
    {
        std::filesystem::remove("/tmp/mero.end");
        vimbo::app_state &app = panels.app();
        app.frame.ui_flags |= vimbo::ui_flag::bottom_shown;
        std::snprintf(app.mosaic.tray_directory, sizeof app.mosaic.tray_directory, "%s",
                      place.file("tray").c_str());
        std::filesystem::create_directory(place.file("tray"));
    }

    ~EvaluationPanel() override
    {
        write_file(tools.file("go"), ""); // whatever still waits for it
        finish();
    }

    bool running()
    {
        return has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::eval_running);
    }

    // Frames until the run has ended. The last frame is the one that took it.
    bool finish()
    {
        return wait_until([this] {
            if (running())
                panels.frame();
            return !running();
        });
    }

    // Frames until it holds. False when it never does.
    bool frames_until(const std::function<bool()> &condition)
    {
        constexpr int most = 1000;
        for (int i = 0; i < most && !condition(); ++i)
            panels.frame();
        return condition();
    }

    bool run(std::string_view button)
    {
        panels.click(button);
        return finish();
    }

    std::string text()
    {
        return panels.app().evaluation.eval_text;
    }

    void expect_text(const std::string &pattern)
    {
        EXPECT_TRUE(std::regex_match(text(), std::regex(pattern))) << text();
    }

    const scratch_directory place;
    const tool_path tools;
    panel_rig panels;
};

TEST_F(EvaluationPanel, EvaluatesACopyOfTheEditedText)
{
    tools.put("mero", "exit 0");
    write_file(place.file("a"), "the text\nof two lines");
    vimbo::open_source(panels.app().bar, panels.app().editor, place.file("a").c_str());
    std::filesystem::remove(handed_text_path());
    ASSERT_TRUE(run("Evaluate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n" + handed_text_path() + "\n");
    EXPECT_EQ(read_file(handed_text_path()), "the text\nof two lines");
}

TEST_F(EvaluationPanel, AsksForRawOutputWhenRawIsTicked)
{
    tools.put("mero", "exit 0");
    panels.click("Raw");
    ASSERT_TRUE(run("Evaluate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n-r\n" + handed_text_path() + "\n");
    panels.click("Raw");
    ASSERT_TRUE(run("Evaluate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n" + handed_text_path() + "\n");
}

TEST_F(EvaluationPanel, IntegratesIntoTheCurrentMosaic)
{
    tools.put("mero", "exit 0");
    panels.app().mosaic.mosaic_index = 5;
    ASSERT_TRUE(run("Integrate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-s\n35.000000\n" + handed_text_path() + "\n" +
                                              place.file("tray") + "/_mosaics/5.mmv\n");
    EXPECT_EQ(panels.app().mosaic.mosaic_path, place.file("tray") + "/_mosaics/5.mmv");
}

TEST_F(EvaluationPanel, CentersWhenCenterIsTickedAndTakesTheUnit)
{
    tools.put("mero", "exit 0");
    panels.click("Center");
    panels.app().evaluation.unit_um = 12.5;
    ASSERT_TRUE(run("Integrate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-c\n-s\n12.500000\n" + handed_text_path() + "\n" +
                                              place.file("tray") + "/_mosaics/0.mmv\n");
}

TEST_F(EvaluationPanel, LeavesRawToEvaluateAndCenterToIntegrate)
{
    tools.put("mero", "exit 0");
    panels.click("Raw");
    panels.click("Center");
    ASSERT_TRUE(run("Evaluate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n-r\n" + handed_text_path() + "\n");
    ASSERT_TRUE(run("Integrate"));
    EXPECT_EQ(tools.arguments_of("mero").substr(0, 6), "-c\n-s\n");
}

TEST_F(EvaluationPanel, KeepsTheUnitBetweenOneAndAThousand)
{
    panels.frame();
    const point label = *panels.find("Unit [µm]");
    const auto drag = [&](int step) {
        panels.move(label);
        panels.frame();
        for (int i = 0; i < 20; ++i) {
            panels.press({label.x + i * step, label.y});
            panels.frame();
        }
        panels.release(label);
        panels.frame();
    };
    drag(-100);
    EXPECT_EQ(panels.app().evaluation.unit_um, 1.0);
    drag(1000);
    EXPECT_EQ(panels.app().evaluation.unit_um, 1000.0);
}

TEST_F(EvaluationPanel, ChangesTheUnitByOneMicrometreWithItsArrows)
{
    panels.frame();
    const std::optional<point> label = panels.find("Unit [µm]");
    ASSERT_TRUE(label);
    // The property is the one box around its label that has the rest of the row.
    const auto boxes = panels.rectangles();
    const auto box = std::ranges::find_if(boxes, [&](const drawn_rectangle &filled) {
        return filled.bounds.h < 40 && filled.bounds.x < static_cast<float>(label->x) &&
               filled.bounds.x + filled.bounds.w > static_cast<float>(label->x) &&
               filled.bounds.y < static_cast<float>(label->y) &&
               filled.bounds.y + filled.bounds.h > static_cast<float>(label->y);
    });
    ASSERT_NE(box, boxes.end());
    const int left = static_cast<int>(box->bounds.x) + 10;
    const int right = static_cast<int>(box->bounds.x + box->bounds.w) - 10;
    panels.click({right, label->y});
    EXPECT_EQ(panels.app().evaluation.unit_um, 36);
    panels.click({left, label->y});
    panels.click({left, label->y});
    EXPECT_EQ(panels.app().evaluation.unit_um, 34);
}

TEST_F(EvaluationPanel, StartsAtThirtyFiveMicrometres)
{
    EXPECT_EQ(panels.app().evaluation.unit_um, 35.0);
}

TEST_F(EvaluationPanel, MakesTheDirectoryForMosaicsBeforeTheToolStarts)
{
    tools.put("mero", "find " + place.file("tray/_mosaics") + " exit 3");
    ASSERT_TRUE(run("Integrate"));
    expect_text("Building\\.+\nStatus: uknown\\.\n");
}

TEST_F(EvaluationPanel, LeavesAnExistingMosaicToTheTool)
{
    write_file(place.file("tray/_mosaics/0.mmv"), "old");
    tools.put("mero", "exit 1");
    ASSERT_TRUE(run("Integrate"));
    EXPECT_EQ(read_file(place.file("tray/_mosaics/0.mmv")), "old");
}

TEST_F(EvaluationPanel, QuotesATrayWithABlank)
{
    tools.put("mero", "exit 0");
    std::filesystem::create_directory(place.file("a tray"));
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, place.file("a tray").c_str());
    ASSERT_TRUE(run("Integrate"));
    EXPECT_EQ(tools.arguments_of("mero"), "-s\n35.000000\n" + handed_text_path() + "\n" +
                                              place.file("a tray") + "/_mosaics/0.mmv\n");
}

TEST_F(EvaluationPanel, ShowsOutputUnderItsHeadingAndTheStatus)
{
    tools.put("mero", "say '12 moves\\n'");
    ASSERT_TRUE(run("Evaluate"));
    expect_text("Compilling\\.+\nEvaluation:\n12 moves\n\nStatus: ok\\.\n");
}

TEST_F(EvaluationPanel, ShowsNoHeadingForASilentTool)
{
    tools.put("mero", "exit 0");
    ASSERT_TRUE(run("Evaluate"));
    expect_text("Compilling\\.+\nStatus: ok\\.\n");
    ASSERT_TRUE(run("Integrate"));
    expect_text("Building\\.+\nStatus: ok\\.\n");
}

TEST_F(EvaluationPanel, NamesEveryStatus)
{
    const std::pair<const char *, const char *> endings[] = {
        {"exit 0", "ok"},      {"exit 1", "error"},     {"exit 3", "uknown"},
        {"exit 127", "error"}, {"exit -1", "abnormal"}, {"exit 254", "error"}};
    for (const auto &[ending, word] : endings) {
        tools.put("mero", ending);
        ASSERT_TRUE(run("Evaluate"));
        expect_text("Compilling\\.+\nStatus: " + std::string(word) + "\\.\n");
    }
}

TEST_F(EvaluationPanel, ShowsTheErrorStatusOfAMissingTool)
{
    const tool_path nothing_else;
    set_variable("PATH", nothing_else.folder());
    testing::internal::CaptureStderr();
    ASSERT_TRUE(run("Evaluate"));
    expect_text("Compilling\\.+\nStatus: error\\.\n");
    testing::internal::GetCapturedStderr();
}

TEST_F(EvaluationPanel, HasRoomForTheMostThatAToolCanShow)
{
    tools.put("mero", "write 100000 exit 3");
    ASSERT_TRUE(run("Evaluate"));
    const std::string shown = text();
    EXPECT_EQ(shown.substr(shown.size() - 21), "\n...\nStatus: uknown.\n");
    EXPECT_LT(shown.size(), vimbo::eval_text_capacity);
}

TEST_F(EvaluationPanel, OffersCancelAloneWhileAToolRuns)
{
    tools.put("mero", "await " + tools.file("go"));
    panels.frame();
    const int middle = (panels.find("Evaluate")->x + panels.find("Integrate")->x) / 2;
    panels.click("Evaluate");
    panels.frame();
    ASSERT_TRUE(panels.find("Cancel"));
    EXPECT_NEAR(panels.find("Cancel")->x, middle, 1) << "it takes the place of both";
    EXPECT_FALSE(panels.find("Evaluate"));
    EXPECT_FALSE(panels.find("Integrate"));
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    EXPECT_TRUE(panels.find("Evaluate"));
    EXPECT_TRUE(panels.find("Integrate"));
    EXPECT_FALSE(panels.find("Cancel"));
}

TEST_F(EvaluationPanel, CancelLeavesAnEmptyMarkerAndWaitsForNothing)
{
    tools.put("mero", "await /tmp/mero.end exit 3");
    panels.click("Evaluate");
    EXPECT_FALSE(std::filesystem::exists("/tmp/mero.end"));
    panels.click("Cancel");
    ASSERT_TRUE(std::filesystem::exists("/tmp/mero.end"));
    EXPECT_EQ(std::filesystem::file_size("/tmp/mero.end"), 0U);
    ASSERT_TRUE(finish());
    expect_text("Compilling\\.+\nStatus: uknown\\.\n");
    EXPECT_TRUE(std::filesystem::exists("/tmp/mero.end")) << "it is the tool's to remove";
}

TEST_F(EvaluationPanel, GrowsADotAFrameAndThenSpins)
{
    tools.put("mero", "await " + tools.file("go"));
    panels.click("Evaluate");
    const std::size_t begun = text().size();
    panels.frame();
    EXPECT_EQ(text().size(), begun + 1) << "one dot a frame";
    ASSERT_TRUE(frames_until([&] { return text().size() >= 64; })) << text();
    EXPECT_EQ(text(), "Compilling" + std::string(54, '.'));
    std::string turns;
    for (int i = 0; i < 6; ++i) {
        panels.frame();
        turns += text().back();
    }
    EXPECT_EQ(turns, "-\\|/-\\");
    EXPECT_EQ(text().size(), 64U);
}

TEST_F(EvaluationPanel, PutsADotForTheSpinnerWhateverItsPhase)
{
    // A sanitizer's own thread comes with the first one that is started.
    tools.put("mero", "exit 0");
    panels.click("Evaluate");
    ASSERT_TRUE(finish());
    for (const char phase : {'.', '-', '\\', '|', '/'}) {
        std::filesystem::remove(tools.file("go"));
        tools.put("mero", "await " + tools.file("go"));
        const std::size_t threads = threads_of(getpid());
        panels.click("Evaluate");
        ASSERT_TRUE(frames_until([&] { return text().size() >= 64 && text().back() == phase; }))
            << "never a line with " << phase << " at its end: " << text();
        write_file(tools.file("go"), "");
        // Once the reader has ended, the very next frame takes the end.
        ASSERT_TRUE(wait_until([&] { return threads_of(getpid()) == threads; }));
        ASSERT_EQ(text().back(), phase);
        panels.frame();
        ASSERT_FALSE(running());
        EXPECT_EQ(text(), "Compilling" + std::string(54, '.') + "\nStatus: ok.\n");
    }
}

TEST_F(EvaluationPanel, RequestsAReloadInTheFrameThatTakesTheToolsEnd)
{
    tools.put("mero", "await " + tools.file("go"));
    panels.click("Evaluate");
    panels.frame();
    EXPECT_FALSE(has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::reload_mosaic));
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    EXPECT_TRUE(has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::reload_mosaic));
    panels.frame();
    EXPECT_FALSE(has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::reload_mosaic));
}

TEST_F(EvaluationPanel, ClearsTheLastRunsTextAtTheNextStart)
{
    tools.put("mero", "say output");
    ASSERT_TRUE(run("Evaluate"));
    tools.put("mero", "await " + tools.file("go"));
    panels.click("Integrate");
    expect_text("Building\\.+");
}

TEST_F(EvaluationPanel, DoesNotPollWhileTheBottomIsHidden)
{
    tools.put("mero", "say done");
    panels.click("Evaluate");
    panels.app().frame.ui_flags &= ~vimbo::ui_flag::bottom_shown;
    const std::string before = text();
    for (int i = 0; i < 20; ++i)
        panels.frame();
    EXPECT_EQ(text(), before);
    EXPECT_TRUE(running());
    panels.app().frame.ui_flags |= vimbo::ui_flag::bottom_shown;
    ASSERT_TRUE(finish());
    expect_text("Compilling\\.+\nEvaluation:\ndone\nStatus: ok\\.\n");
}

TEST_F(EvaluationPanel, LeavesNothingBehindAfterManyRuns)
{
    tools.put("mero", "say output");
    ASSERT_TRUE(run("Evaluate"));
    const std::size_t descriptors = open_descriptors(getpid());
    const std::size_t threads = threads_of(getpid());
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(run(i % 2 == 0 ? "Evaluate" : "Integrate"));
    EXPECT_EQ(open_descriptors(getpid()), descriptors);
    EXPECT_EQ(children_of(getpid()), 0U);
    EXPECT_EQ(threads_of(getpid()), threads);
}

} // namespace
