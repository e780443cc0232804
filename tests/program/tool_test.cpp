// The evaluator and the statistics tool, as the operator starts them.
#include "tests/program/program_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/wait.hpp"

#include <signal.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <thread>

namespace
{

using namespace rig;

class Evaluator : public ProgramRig
{
protected:
    bool responsive()
    {
        return screen->count_redraws(window, std::chrono::seconds(1)) >= 2;
    }
};

TEST_F(Evaluator, IsAskedForRawOutputOnlyWhenRawIsTicked)
{
    tools.put("mero", "exit 0");
    start({.bottom = true});
    driver->press("Evaluate");
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    screen->settle();
    std::filesystem::remove(tools.file("mero.arguments"));
    driver->press("Raw");
    driver->press("Evaluate");
    EXPECT_EQ(awaited_arguments("mero"), "-S\n-r\n/tmp//vimbo\n");
    expect_good_end();
}

TEST_F(Evaluator, IsStartedByAClickWhereItWasMadeHoweverLateItIsSeen)
{
    tools.put("mero", "exit 0");
    start({.bottom = true});
    kill(vimbo->id(), SIGSTOP);
    for (const char *label : {"Raw", "Evaluate"}) {
        screen->move(driver->place_of(label));
        screen->press();
        screen->release();
    }
    screen->move({2, 2});
    kill(vimbo->id(), SIGCONT);
    EXPECT_EQ(awaited_arguments("mero"), "-S\n-r\n/tmp//vimbo\n");
    expect_good_end();
}

TEST_F(Evaluator, IsStartedByAClickAfterTheWindowMovedUnderThePointer)
{
    tools.put("mero", "exit 0");
    start({.bottom = true});
    const point button = driver->place_of("Evaluate");
    screen->move({button.x + 60, button.y + 40});
    screen->settle();
    screen->move_window(window, {60, 40});
    screen->settle();
    screen->press();
    screen->settle();
    screen->release();
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    screen->move_window(window, {0, 0});
    expect_good_end();
}

TEST_F(Evaluator, BuildsTheFirstMosaicInADirectoryThatIsMadeForIt)
{
    write_file(place.file("square.mmv"), square_mosaic(40));
    write_script(tools.file("mero"), "[ -d " + place.file("tray/_mosaics") + " ] || exit 1\n" +
                                         "cp " + place.file("square.mmv") + " \"$5\"\n");
    start({.preview = true});
    EXPECT_FALSE(std::filesystem::exists(place.file("tray/_mosaics")));
    driver->press("Center");
    driver->press("Integrate");
    EXPECT_TRUE(shows(mark_colour, 400));
    expect_good_end();
}

TEST_F(Evaluator, IsAskedToStopByAnEmptyMarker)
{
    tools.put("mero", "await /tmp/mero.end exit 3");
    start({.bottom = true});
    driver->press("Evaluate");
    awaited_arguments("mero");
    screen->settle();
    EXPECT_FALSE(std::filesystem::exists("/tmp/mero.end"));
    // The one button of the row, while the tool runs, is Cancel.
    driver->press("Evaluate");
    EXPECT_TRUE(wait_until([] { return std::filesystem::exists("/tmp/mero.end"); }));
    EXPECT_EQ(std::filesystem::file_size("/tmp/mero.end"), 0U);
    expect_good_end();
}

TEST_F(Evaluator, IsStartedByAPressShorterThanAFrame)
{
    tools.put("mero", "exit 0");
    start({.bottom = true});
    screen->move(driver->place_of("Evaluate"));
    screen->settle();
    screen->press();
    screen->release();
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    expect_good_end();
}

TEST_F(Evaluator, NeverBlocksTheWindow)
{
    const std::string actions[] = {
        "say begun await " + place.file("never"),
        "say begun shut await " + place.file("never"),
        "leave " + place.file("never") + " say begun await " + place.file("never"),
        "write 10000000 await " + place.file("never"),
    };
    for (const std::string &action : actions) {
        std::filesystem::remove(tools.file("mero.arguments"));
        tools.put("mero", action);
        start({.bottom = true});
        driver->press("Evaluate");
        awaited_arguments("mero");
        EXPECT_TRUE(responsive()) << action;
        expect_good_end();
    }
}

TEST_F(Evaluator, IsReportedByTheShellWhenItIsMissing)
{
    start({.environment = {"PATH=/nowhere"}, .bottom = true});
    driver->press("Evaluate");
    // In words of the shell's, in one line.
    const std::regex words("[^\n]*mero: [^\n]*not found\n");
    EXPECT_TRUE(wait_until([&] { return std::regex_match(complaints(), words); })) << complaints();
    EXPECT_TRUE(responsive());
    const std::string once = complaints();
    driver->press("Evaluate");
    EXPECT_TRUE(wait_until([&] { return complaints() == once + once; }))
        << "the second run: " << complaints();
    expect_good_end(once + once);
}

TEST_F(Evaluator, IsStartedThoughItsTextCouldNotBeWritten)
{
    std::filesystem::create_directory("/tmp/vimbo");
    tools.put("mero", "exit 0");
    start({.bottom = true});
    driver->press("Evaluate");
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    EXPECT_TRUE(responsive());
    std::filesystem::remove("/tmp/vimbo");
    expect_good_end("error: unable to write /tmp//vimbo.\n");
}

// What a tool does once it has noted its process.
struct habit {
    const char *name;
    const char *script;
    bool lives_on; // when nobody reads its output any more
};

class RunningTool : public ProgramRig, public testing::WithParamInterface<habit>
{
protected:
    std::vector<pid_t> begun() const
    {
        std::ifstream list(place.file("begun"));
        return {std::istream_iterator<pid_t>(list), std::istream_iterator<pid_t>()};
    }
};

#define AWAIT "exec " VIMBO_STUB_TOOL " await ./never\n"

INSTANTIATE_TEST_SUITE_P(
    Any, RunningTool,
    testing::Values(habit{"ThatIsSilent", AWAIT, true},
                    habit{"ThatNeverEnds", "echo 0.5\n" AWAIT, true},
                    habit{"ThatClosesItsOutput", "echo 0.5\nexec >&-\n" AWAIT, true},
                    habit{"ThatLeavesAnother", "sleep 60 &\necho 0.5\n" AWAIT, true},
                    habit{"ThatIgnoresSignals", "trap '' HUP INT PIPE TERM\n" AWAIT, true},
                    habit{"ThatPrintsZeroBytesAndEscapes",
                          "printf '\\0\\377\\300\\033[2J\\033]0;x\\007'\n" AWAIT, true},
                    habit{"ThatFloodsInLines", "exec yes\n", false},
                    habit{"ThatFloodsWithoutALineFeed", "exec tr '\\0' 1 </dev/zero\n", false},
                    habit{"ThatFloodsWithZeroBytes", "exec cat /dev/zero\n", false}),
    [](const auto &chosen) { return std::string(chosen.param.name); });

TEST_P(RunningTool, DoesNotDelayTheProgramsEnd)
{
    for (const char *name : {"mero", "plimb"})
        write_script(tools.file(name),
                     "echo $$ >>" + place.file("begun") + '\n' + GetParam().script);
    start({.bottom = true, .statistics = true});
    driver->press("Evaluate");
    driver->press("↻");
    ASSERT_TRUE(wait_until([this] { return begun().size() == 2; }));
    screen->settle();
    expect_good_end();
    for (const pid_t tool : begun())
        EXPECT_TRUE(!GetParam().lives_on || kill(tool, SIGKILL) == 0) << "it has ended first";
}

class Statistics : public ProgramRig
{
protected:
    // Where the chart of moves draws these two values, as the layout has it.
    std::vector<struct nk_rect> columns(float marks, float jumps)
    {
        vimbo_app().statistics.run.stats_moves[0] = marks;
        vimbo_app().statistics.run.stats_moves[1] = jumps;
        driver->panels().frame();
        std::vector<struct nk_rect> found;
        for (const drawn_rectangle &box : driver->panels().rectangles())
            if (box.colour.r == 255 && box.colour.g == 255 && box.colour.b == 255)
                found.push_back(box.bounds);
        return found;
    }

    ::vimbo::app_state &vimbo_app()
    {
        return driver->panels().app();
    }

    bool shows_columns(float marks, float jumps)
    {
        const std::vector<struct nk_rect> wanted = columns(marks, jumps);
        EXPECT_EQ(wanted.size(), 2U);
        return wanted.size() == 2 && wait_until([&] { return drawn(wanted); });
    }

    // White to its top, and blue above.
    bool drawn(const std::vector<struct nk_rect> &wanted) const
    {
        const image all = screen->screenshot();
        bool as_wanted = true;
        for (const struct nk_rect &column : wanted) {
            const int x = static_cast<int>(column.x + column.w / 2);
            const int top = static_cast<int>(column.y);
            as_wanted = as_wanted && all.at(x, top + 4) == mark_colour &&
                        all.at(x, top - 4) == picture_background;
        }
        return as_wanted;
    }

    void choose_moves()
    {
        driver->choose_starting("Locality", "Mark / jump");
    }
};

TEST_F(Statistics, MeasureTheMosaicOnTheScreen)
{
    tools.put("plimb", "numbers 50 0.5");
    start({.statistics = true});
    driver->choose_mosaic(3);
    driver->press("↻");
    EXPECT_EQ(awaited_arguments("plimb"), place.file("tray") + "/_mosaics/3.mmv\n");
    expect_good_end();
}

TEST_F(Statistics, ShowMarksAndJumpsAsWhiteColumns)
{
    tools.put("plimb", "numbers 48 0 numbers 1 0.75 numbers 1 0.25");
    start({.statistics = true});
    choose_moves();
    driver->press("↻");
    awaited_arguments("plimb");
    EXPECT_TRUE(shows_columns(0.75F, 0.25F));
    expect_good_end();
}

TEST_F(Statistics, ThatEndWhileThePanelIsClosedAreShownWhenItIsOpened)
{
    tools.put("plimb", "await " + place.file("go") +
                           " numbers 48 0 numbers 1 0.75 numbers 1 0.25 "
                           "touch " +
                           place.file("done"));
    start({.statistics = true});
    choose_moves();
    driver->press("↻");
    awaited_arguments("plimb");
    driver->show_statistics(); // its toggle
    write_file(place.file("go"), "");
    ASSERT_TRUE(wait_until([this] { return std::filesystem::exists(place.file("done")); }));
    screen->settle();
    driver->show_statistics();
    EXPECT_TRUE(shows_columns(0.75F, 0.25F));
    expect_good_end();
}

TEST_F(Statistics, KeepTheirFiguresWhenTheToolFails)
{
    tools.put("plimb", "numbers 48 0 numbers 1 0.75 numbers 1 0.25");
    start({.statistics = true});
    choose_moves();
    driver->press("↻");
    awaited_arguments("plimb");
    EXPECT_TRUE(shows_columns(0.75F, 0.25F));
    std::filesystem::remove(tools.file("plimb.arguments"));
    tools.put("plimb", "say 'no mosaic' exit 1");
    driver->press("↻");
    awaited_arguments("plimb");
    screen->settle();
    EXPECT_TRUE(shows_columns(0.75F, 0.25F));
    expect_good_end();
}

TEST_F(Statistics, AreZeroAfterWordsInAFreshProgram)
{
    tools.put("plimb", "say 'no mosaic'");
    start({.statistics = true});
    choose_moves();
    struct nk_rect chart = {};
    for (const drawn_rectangle &box : driver->panels().rectangles())
        if (box.colour.r == picture_background.red && box.colour.g == picture_background.green)
            chart = box.bounds;
    ASSERT_GT(chart.w, 100);
    driver->press("↻");
    awaited_arguments("plimb");
    EXPECT_TRUE(wait_until([this] { return children_of(vimbo->id()) == 0; }));
    screen->settle();
    EXPECT_GT(count(chart, picture_background), 10000);
    EXPECT_EQ(count(chart, mark_colour), 0);
    expect_good_end();
}

TEST_F(Statistics, HighlightTheColumnUnderThePointer)
{
    tools.put("plimb", "numbers 48 0 numbers 1 0.75 numbers 1 0.25");
    start({.statistics = true});
    choose_moves();
    driver->press("↻");
    awaited_arguments("plimb");
    ASSERT_TRUE(shows_columns(0.75F, 0.25F));
    const struct nk_rect column = columns(0.75F, 0.25F)[0];
    EXPECT_EQ(count(column, outline_colour), 0);
    screen->move(
        {static_cast<int>(column.x + column.w / 2), static_cast<int>(column.y + column.h / 2)});
    EXPECT_TRUE(wait_until([&] { return count(column, outline_colour) > 100; }));
    expect_good_end();
}

TEST_F(Statistics, HighlightNothingOnceThePointerHasLeftTheWindow)
{
    tools.put("plimb", "numbers 48 0 numbers 1 0.75 numbers 1 0.25");
    start({.statistics = true});
    choose_moves();
    driver->press("↻");
    awaited_arguments("plimb");
    ASSERT_TRUE(shows_columns(0.75F, 0.25F));
    const struct nk_rect column = columns(0.75F, 0.25F)[0];
    screen->move({1500, 30});
    screen->settle();
    const image before = screen->screenshot();
    const point inside = {static_cast<int>(column.x + column.w / 2),
                          static_cast<int>(column.y + column.h / 2)};
    screen->move(inside);
    ASSERT_TRUE(wait_until([&] { return count(column, outline_colour) > 100; }));
    screen->move({1500, inside.y});
    EXPECT_TRUE(wait_until([&] { return screen->screenshot().pixels == before.pixels; }))
        << "highlight or tooltip stay behind";
    // Back where it was last, a click counts there.
    screen->move(inside);
    EXPECT_TRUE(wait_until([&] { return count(column, outline_colour) > 100; }));
    expect_good_end();
}

} // namespace
