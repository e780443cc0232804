// What the operator does all day, with the program and the tools that are built for
// Windows.
#include "tests/wine/wine_rig.hpp"

#include "tests/support/wait.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <thread>

namespace
{

using namespace rig;

constexpr colour mark_colour = {255, 255, 255};
constexpr colour outline_colour = {217, 166, 115};
// More moves than one window of the locality curve has.
constexpr char zigzag[] = "jump(-1000, 0)\n"
                          "for i = 1, 100 do mark(20 * i - 1000, i % 2 * 500) end\n";
constexpr std::size_t moves = 101;

class Windows : public WineRig
{
protected:
    void press_key(std::string_view name, int times = 1) const
    {
        for (int i = 0; i < times; ++i)
            screen->key(name);
    }

    void save_as(std::string_view shown, std::u32string_view name)
    {
        driver->toggle("+");
        screen->click(driver->place_of(shown));
        press_key("End");
        press_key("BackSpace", static_cast<int>(shown.size()));
        screen->type(name);
        press_key("Return");
        driver->panels().click("!"); // the program has left this mode by itself
    }

    // Until the picture has marks, or has none.
    bool shows_marks(bool wanted)
    {
        return wait_until([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            return (count(driver->picture(), mark_colour) > 100) == wanted;
        });
    }

    bool exists_after(const std::string &path) const
    {
        return wait_until([&] { return std::filesystem::exists(path); });
    }

    static bool vanishes(const std::string &path)
    {
        return wait_until([&] { return !std::filesystem::exists(path); });
    }

    // An evaluator that begins takes a marker away that was there before it.
    void evaluate()
    {
        write_file(stop_marker, "");
        driver->press("Evaluate");
        ASSERT_TRUE(vanishes(stop_marker)) << "the evaluator does not begin";
    }

    // While a tool runs there is another button; the pointer must be elsewhere.
    image evaluate_button()
    {
        const struct nk_rect at = driver->bounds_of("Evaluate");
        return crop(screen->screenshot(), static_cast<int>(at.x), static_cast<int>(at.y),
                    static_cast<int>(at.w), static_cast<int>(at.h));
    }
};

TEST_F(Windows, SourceIsPickedEditedSavedUnderAnotherNameAndDeleted)
{
    write_file(source("a.txt"), "first line\r\nsecond line\n");
    start();
    driver->choose("--", "a.txt");
    screen->click(driver->editor());
    screen->type(U"Edited.");
    save_as("a.txt", U"b.txt");
    ASSERT_TRUE(exists_after(source("b.txt")));
    EXPECT_EQ(read_file(source("b.txt")), "first line\r\nsecond line\nEdited.");
    EXPECT_EQ(read_file(source("a.txt")), "first line\r\nsecond line\n");
    driver->press("-");
    driver->press("-");
    EXPECT_TRUE(vanishes(source("b.txt")));
    close_and_expect_good_end();
}

TEST_F(Windows, TextIsCopiedAndPasted)
{
    write_file(source("a.txt"), "twice ");
    start();
    driver->choose("--", "a.txt");
    screen->click(driver->editor());
    for (const char *key : {"ctrl+a", "ctrl+c", "End", "ctrl+v"})
        press_key(key);
    save_as("a.txt", U"b.txt");
    ASSERT_TRUE(exists_after(source("b.txt")));
    EXPECT_EQ(read_file(source("b.txt")), "twice twice ");
    close_and_expect_good_end();
}

TEST_F(Windows, SourceIsIntegratedShownAndMeasured)
{
    write_file(source("zigzag.lua"), zigzag);
    start();
    show_all();
    EXPECT_GT(count(driver->picture(), outline_colour), 100) << "the tray's outline";
    driver->choose("--", "zigzag.lua");
    driver->press("Integrate");
    ASSERT_TRUE(exists_after(mosaic(0)));
    EXPECT_EQ(std::filesystem::file_size(mosaic(0)), 32U + 8 * moves);
    EXPECT_TRUE(shows_marks(true));

    driver->choose_mosaic(3);
    EXPECT_TRUE(shows_marks(false));
    driver->choose_mosaic(0);
    EXPECT_TRUE(shows_marks(true));
    const struct nk_rect charts = {801, 40, 780, 500};
    const int before = count(charts, mark_colour);
    driver->press("↻");
    EXPECT_TRUE(wait_until([&] { return count(charts, mark_colour) != before; }))
        << "the charts show nothing else";
    close_and_expect_good_end();
}

TEST_F(Windows, EvaluationIsCancelled)
{
    write_file(source("endless.lua"), "while true do end\nmark(1, 1)\n");
    start();
    driver->show_bottom();
    driver->choose("--", "endless.lua");
    screen->click(driver->editor());
    const image idle = evaluate_button();
    evaluate();
    screen->click(driver->editor());
    EXPECT_FALSE(evaluate_button().pixels == idle.pixels) << "nothing runs";
    driver->press("Evaluate"); // the one button of the row is Cancel now
    screen->click(driver->editor());
    EXPECT_TRUE(wait_until([&] { return evaluate_button().pixels == idle.pixels; }))
        << "the run does not end";
    EXPECT_FALSE(std::filesystem::exists(stop_marker)) << "the evaluator did not see it";
    press_key("Up", 3);
    press_key("Home");
    screen->type(U"-- ");
    driver->press("Integrate");
    EXPECT_TRUE(exists_after(mosaic(0)));
    close_and_expect_good_end();
}

TEST_F(Windows, TrayIsChosen)
{
    write_file(source("zigzag.lua"), zigzag);
    std::filesystem::create_directories(place.file("other"));
    start();
    driver->show_bottom();
    driver->show_preview();
    driver->choose("--", "zigzag.lua");
    driver->choose("tray", "other");
    driver->press("Integrate");
    ASSERT_TRUE(exists_after(mosaic(0, "other")));
    EXPECT_FALSE(std::filesystem::exists(mosaic(0)));
    EXPECT_TRUE(shows_marks(true));
    driver->choose("other", "tray");
    EXPECT_TRUE(shows_marks(false));
    close_and_expect_good_end();
}

TEST_F(Windows, QuitButtonEndsWhileAToolRuns)
{
    write_file(source("endless.lua"), "while true do end\n");
    start();
    driver->show_bottom();
    driver->choose("--", "endless.lua");
    evaluate();
    screen->move(driver->place_of("X"));
    screen->settle();
    const auto begin = std::chrono::steady_clock::now();
    screen->press();
    EXPECT_TRUE(wait_until([this] { return !vimbo->running(); }));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    expect_good_end();
    write_file(stop_marker, "");
    EXPECT_TRUE(vanishes(stop_marker)) << "the tool did not outlive the program";
}

TEST_F(Windows, WrongOptionPrintsTheUsageAndEndsWithMinusOne)
{
    program run({.arguments = {"wine", windows_folder() + "/bin/vimbo.exe", "-x"},
                 .environment = {},
                 .directory = place.path().string(),
                 .output = place.file("output"),
                 .errors = place.file("errors")});
    const int status = run.wait_for_end();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 255) << "wait status " << status;
    EXPECT_EQ(read_file(place.file("output")), "");
    EXPECT_TRUE(read_file(place.file("errors"))
                    .starts_with("Vimbo is mero's interface to korvat.\nusage: "));
}

} // namespace
