// The editor's keys, pressed on a real keyboard.
#include "tests/program/program_rig.hpp"

namespace
{

using namespace rig;

class Keys : public ProgramRig
{
protected:
    // The source is open, and the cursor stands at its end.
    void edit(const std::string &text)
    {
        write_file(source("a.txt"), text);
        start({.bottom = true});
        driver->choose("--", "a.txt");
        screen->click(driver->editor());
        screen->key("End");
    }

    void press(std::initializer_list<std::string_view> names)
    {
        for (const std::string_view name : names)
            screen->key(name);
    }
};

TEST_F(Keys, ControlASelectsAllSoThatTypingReplacesIt)
{
    edit("one\ntwo");
    press({"ctrl+a"});
    screen->type(U"new");
    EXPECT_EQ(evaluated_text(), "new");
    expect_good_end();
}

TEST_F(Keys, ControlXCutsAndControlVPutsItBack)
{
    edit("one\ntwo");
    press({"ctrl+a", "ctrl+x"});
    EXPECT_EQ(evaluated_text(), "");
    screen->click(driver->editor());
    press({"ctrl+v", "ctrl+v"});
    EXPECT_EQ(evaluated_text(), "one\ntwoone\ntwo");
    expect_good_end();
}

TEST_F(Keys, ControlCWithoutASelectionKeepsWhatWasCopied)
{
    edit("one");
    press({"ctrl+a", "ctrl+c", "End", "ctrl+c", "ctrl+v"});
    EXPECT_EQ(evaluated_text(), "oneone");
    expect_good_end();
}

TEST_F(Keys, ControlVReplacesTheSelection)
{
    edit("one");
    press({"ctrl+a", "ctrl+c", "End"});
    screen->type(U" two");
    press({"ctrl+a", "ctrl+v"});
    EXPECT_EQ(evaluated_text(), "one");
    expect_good_end();
}

TEST_F(Keys, ControlZTakesAnEditBackAndThreeKeysBringItAgain)
{
    edit("one");
    screen->type(U"x");
    for (const std::string_view redo : {"ctrl+r", "ctrl+y", "ctrl+shift+z"}) {
        press({"ctrl+z"});
        EXPECT_EQ(evaluated_text(), "one") << redo;
        screen->click(driver->editor());
        press({redo});
        EXPECT_EQ(evaluated_text(), "onex") << redo;
        screen->click(driver->editor());
    }
    expect_good_end();
}

TEST_F(Keys, ControlZBringsADeletedSourceBackWhole)
{
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += "a line of the source\n";
    edit(text);
    press({"ctrl+a", "Delete"});
    EXPECT_EQ(evaluated_text(), "");
    screen->click(driver->editor());
    press({"ctrl+z"});
    EXPECT_EQ(evaluated_text(), text);
    expect_good_end();
}

TEST_F(Keys, MoveTheCursor)
{
    edit("one two\nthree four\nfive");
    // Each leaves its mark where it led to.
    const std::pair<std::string_view, char32_t> steps[] = {
        {"End", U'1'},        {"Left", U'2'},      {"Up", U'3'},    {"ctrl+b", U'4'},
        {"ctrl+e", U'5'},     {"ctrl+Left", U'6'}, {"Right", U'7'}, {"Home", U'8'},
        {"ctrl+Right", U'9'}, {"Down", U'a'},      {"Next", U'b'},  {"Prior", U'c'}};
    for (const auto &[name, mark] : steps) {
        press({name});
        screen->type(std::u32string(1, mark));
    }
    EXPECT_EQ(evaluated_text(), "c8one9 two\n4threae36 7four5\nbfive21");
    expect_good_end();
}

TEST_F(Keys, DeleteTakesWhatFollowsTheCursor)
{
    edit("one");
    press({"Home", "Delete"});
    EXPECT_EQ(evaluated_text(), "ne");
    expect_good_end();
}

TEST_F(Keys, EnterAndTabAreText)
{
    edit("one");
    press({"Return", "Tab", "KP_Enter"});
    EXPECT_EQ(evaluated_text(), "one\n    \n") << "a tab is four blanks";
    expect_good_end();
}

TEST_F(Keys, ControlWithAnyOtherKeyChangesNothing)
{
    edit("one");
    press({"Home", "ctrl+q", "ctrl+period", "ctrl+F5", "F1"});
    EXPECT_EQ(evaluated_text(), "one");
    expect_good_end();
}

TEST_F(Keys, OfALayoutWithoutLatinLettersAreThoseOfTheirPlaces)
{
    edit("one");
    screen->relabel("a", "Cyrillic_ef");
    press({"ctrl+Cyrillic_ef"});
    screen->type(U"two");
    EXPECT_EQ(evaluated_text(), "two");
    expect_good_end();
}

TEST_F(Keys, FollowTheLettersOfTheirLayout)
{
    edit("one");
    screen->relabel("q", "a");
    screen->relabel("a", "q");
    press({"ctrl+a"});
    screen->type(U"two");
    EXPECT_EQ(evaluated_text(), "two");
    expect_good_end();
}

TEST_F(Keys, AndTheFurtherButtonsOfAMouseDoNothing)
{
    edit("one");
    tools.put("mero", "exit 0");
    const point at = driver->place_of("Evaluate");
    for (const int button : {8, 9})
        screen->click(at, button);
    EXPECT_FALSE(std::filesystem::exists(tools.file("mero.arguments")));
    EXPECT_EQ(evaluated_text(), "one");
    expect_good_end();
}

} // namespace
