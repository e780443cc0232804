// Source files: opening, editing, saving under a name, deleting.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

#include <cmath>
#include <thread>

namespace
{

using namespace rig;

class Source : public ProgramRig
{
protected:
    void click_editor()
    {
        screen->click(driver->editor());
    }

    void press_key(std::string_view name, int times = 1)
    {
        for (int i = 0; i < times; ++i)
            screen->key(name);
    }

    // Saves under this name in place of the shown one.
    void save_as(std::string_view shown, std::u32string_view name)
    {
        driver->toggle("+");
        const point field = driver->place_of(shown);
        screen->click(field);
        press_key("End");
        press_key("BackSpace", static_cast<int>(shown.size()));
        screen->type(name);
        press_key("Return");
        driver->panels().click("!"); // the program has left this mode by itself
    }
};

TEST_F(Source, ArrivesWholeAtTheFirstPick)
{
    write_file(source("a.txt"), "one\n\ttwo\n\nlast line\n");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    EXPECT_EQ(evaluated_text(), "one\n\ttwo\n\nlast line\n");
    expect_good_end();
}

TEST_F(Source, IsCutAt65536BytesAndTheWindowGoesOn)
{
    std::string text(70000, 'x');
    for (std::size_t at = 99; at < text.size(); at += 100)
        text[at] = '\n';
    write_file(source("big.txt"), text);
    start({.bottom = true});
    driver->choose("--", "big.txt");
    EXPECT_EQ(evaluated_text(), text.substr(0, 65536));
    expect_good_end();
}

TEST_F(Source, LosesAsManyBytesAtItsEndAsItHasMoreThanCharacters)
{
    write_file(source("a.txt"), "five µm");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    EXPECT_EQ(evaluated_text(), "five µ");
    click_editor();
    press_key("End");
    screen->type(U"xé");
    EXPECT_EQ(evaluated_text(), "five µmx") << "two of eleven bytes are cut";
    expect_good_end();
}

TEST_F(Source, TakesAllThatIsTypedBetweenTwoFrames)
{
    write_file(source("a.txt"), "");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    click_editor();
    std::u32string typed;
    for (int i = 0; i < 100; ++i)
        typed += static_cast<char32_t>(U'a' + i % 26);
    screen->type(typed);
    EXPECT_EQ(evaluated_text(), std::string(typed.begin(), typed.end()));
    expect_good_end();
}

TEST_F(Source, RepeatsAHeldKey)
{
    write_file(source("a.txt"), std::string(60, 'x'));
    start({.bottom = true});
    driver->choose("--", "a.txt");
    click_editor();
    press_key("End");
    screen->hold_key("BackSpace", std::chrono::milliseconds(2500));
    EXPECT_LT(evaluated_text().size(), 55U);
    expect_good_end();
}

TEST_F(Source, IsCopiedAndPastedWithCharactersOfSeveralBytes)
{
    write_file(source("a.txt"), "µm µm\nabcdefgh");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    click_editor();
    // All of it, by dragging from before its first character to behind its last.
    const struct nk_rect line = driver->bounds_of("µm µm");
    screen->move({static_cast<int>(line.x) + 1, static_cast<int>(line.y + line.h / 2)});
    screen->settle();
    screen->press();
    screen->settle();
    screen->move(driver->editor());
    screen->settle();
    screen->release();
    screen->settle();
    press_key("ctrl+c");
    press_key("End");
    press_key("ctrl+v");
    EXPECT_EQ(evaluated_text(), "µm µm\nabcdefghµm µm\nabcd") << "four bytes are cut at the end";
    expect_good_end();
}

TEST_F(Source, IsSavedUnderATypedName)
{
    write_file(source("sub/a.txt"), "the text");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    save_as("a.txt", U"b.txt");
    EXPECT_TRUE(wait_until([&] { return read_file(source("sub/b.txt")) == "the text"; }));
    EXPECT_EQ(read_file(source("sub/a.txt")), "the text");
    expect_good_end();
}

TEST_F(Source, SavedOntoAFullDiskIsReportedAndTheTextStays)
{
    write_file(source("a.txt"), "the text");
    std::filesystem::create_symlink("/dev/full", source("full"));
    start({.bottom = true});
    driver->choose("--", "a.txt");
    save_as("a.txt", U"full");
    EXPECT_TRUE(wait_until([&] { return complaints() == "error: unable to save.\n"; }))
        << complaints();
    EXPECT_EQ(evaluated_text(), "the text");
    expect_good_end("error: unable to save.\n");
}

TEST_F(Source, SavedWhereNothingCanBeWrittenIsReported)
{
    write_file(source("a.txt"), "the text");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    save_as("a.txt", U"no/such");
    EXPECT_TRUE(wait_until([&] { return complaints() == "error: unable to save.\n"; }))
        << complaints();
    expect_good_end("error: unable to save.\n");
}

TEST_F(Source, IsDeletedAtTheSecondPress)
{
    write_file(source("a.txt"), "the text");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    driver->press("-");
    EXPECT_TRUE(std::filesystem::exists(source("a.txt")));
    driver->press("-");
    EXPECT_TRUE(wait_until([&] { return !std::filesystem::exists(source("a.txt")); }));
    EXPECT_EQ(evaluated_text(), "the text") << "the text stays in the editor";
    expect_good_end();
}

TEST_F(Source, IsNotDeletedByTwoPressesFarApart)
{
    write_file(source("a.txt"), "the text");
    start({.width = 800, .height = 600});
    driver->choose("--", "a.txt");
    driver->press("-");
    std::this_thread::sleep_for(std::chrono::milliseconds(4200));
    driver->press("-");
    screen->settle();
    EXPECT_TRUE(std::filesystem::exists(source("a.txt"))) << "the arming has lapsed";
    expect_good_end();
}

TEST_F(Source, SavedAfterADeletionGetsAMinusInFrontOfItsName)
{
    write_file(source("a.txt"), "the text");
    start({.bottom = true});
    driver->choose("--", "a.txt");
    driver->press("-");
    driver->press("-");
    ASSERT_TRUE(wait_until([&] { return !std::filesystem::exists(source("a.txt")); }));
    driver->toggle("+");
    // The field is empty now; in the operator's layout it reads as before.
    screen->click(driver->place_of("a.txt"));
    screen->type(U"new");
    press_key("Return");
    EXPECT_TRUE(wait_until([&] { return read_file(place.file("-new")) == "the text"; }));
    expect_good_end();
}

TEST_F(Source, MayBeMissingAltogether)
{
    std::filesystem::remove_all(place.file("src"));
    start({.bottom = true});
    screen->click(driver->place_of("--"));
    screen->click(driver->place_of("--"));
    EXPECT_EQ(evaluated_text(), "");
    expect_good_end();
}

} // namespace
