// The editor's keys, pressed on a real keyboard.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

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
        {"ctrl+e", U'5'},     {"ctrl+Left", U'6'}, {"Right", U'7'}, {"ctrl+Home", U'8'},
        {"ctrl+Right", U'9'}, {"Down", U'a'},      {"Next", U'b'},  {"Prior", U'c'}};
    for (const auto &[name, mark] : steps) {
        press({name});
        screen->type(std::u32string(1, mark));
    }
    EXPECT_EQ(evaluated_text(), "c8one9 two\n4threae36 7four5\nbfive21");
    expect_good_end();
}

TEST_F(Keys, HomeAndEndGoToTheEndsOfTheLineAndWithControlToThoseOfTheText)
{
    edit("one\ntwo\nthree");
    const std::pair<std::string_view, char32_t> steps[] = {
        {"Up", U'1'}, {"Home", U'2'}, {"End", U'3'}, {"ctrl+Home", U'4'}, {"ctrl+End", U'5'}};
    for (const auto &[name, mark] : steps) {
        press({name});
        screen->type(std::u32string(1, mark));
    }
    EXPECT_EQ(evaluated_text(), "4one\n2two13\nthree5");
    expect_good_end();
}

TEST_F(Keys, HomeAndEndSelectWithShift)
{
    edit("one two\nthree\nfour five");
    press({"ctrl+Left", "shift+End"});
    screen->type(U"a");
    press({"Up", "shift+Home"});
    screen->type(U"b");
    press({"ctrl+shift+Home"});
    screen->type(U"c");
    EXPECT_EQ(evaluated_text(), "c\nfoura");
    expect_good_end();
}

TEST_F(Keys, HomeAndEndGoToTheEndsOfTheNameThatIsTyped)
{
    edit("one");
    driver->toggle("+");
    screen->click(driver->place_of("a.txt"));
    press({"Home"});
    screen->type(U"b");
    press({"End"});
    screen->type(U"c");
    press({"Return"});
    EXPECT_TRUE(wait_until([this] { return std::filesystem::exists(source("ba.txtc")); }));
    expect_good_end();
}

TEST_F(Keys, ControlWithBackspaceAndDeleteTakesAWord)
{
    edit("one two three");
    press({"ctrl+BackSpace"});
    EXPECT_EQ(evaluated_text(), "one two ");
    screen->click(driver->editor());
    press({"Home", "ctrl+Delete"});
    EXPECT_EQ(evaluated_text(), " two ");
    expect_good_end();
}

TEST_F(Keys, F3GoesToTheNextPlaceOfTheSelectionAndWithShiftToThePreviousOne)
{
    edit("ab x ab y ab");
    press({"Home", "shift+Right", "shift+Right", "F3"});
    screen->type(U"1");
    EXPECT_EQ(evaluated_text(), "ab x 1 y ab");
    screen->click(driver->editor());
    press({"ctrl+z", "shift+Left", "shift+Left", "shift+F3"});
    screen->type(U"2");
    EXPECT_EQ(evaluated_text(), "2 x ab y ab");
    expect_good_end();
}

TEST_F(Keys, ControlZTakesAWordBackHoweverFastItWasTyped)
{
    edit("");
    screen->type(U"one two");
    press({"ctrl+z"});
    EXPECT_EQ(evaluated_text(), "one ");
    screen->click(driver->editor());
    screen->type(U"t");
    screen->type(U"w");
    screen->type(U"o");
    press({"ctrl+z"});
    EXPECT_EQ(evaluated_text(), "one ");
    expect_good_end();
}

TEST_F(Keys, ControlZTakesARunOfBackspacesBack)
{
    edit("one two");
    press({"BackSpace", "BackSpace", "BackSpace", "ctrl+z"});
    EXPECT_EQ(evaluated_text(), "one two");
    expect_good_end();
}

TEST_F(Keys, ControlZLeavesTheCursorWhereTheEditWas)
{
    edit("aaaa");
    press({"Home", "Right"});
    screen->type(U"a");
    press({"ctrl+z"});
    screen->type(U"x");
    EXPECT_EQ(evaluated_text(), "axaaa");
    expect_good_end();
}

TEST_F(Keys, ATabIsOneCharacterAndALineEndsBeforeItsCarriageReturn)
{
    edit("\tone\r\ntwo");
    press({"ctrl+Home", "End"});
    screen->type(U"1");
    press({"Home", "Right"});
    screen->type(U"2");
    EXPECT_EQ(evaluated_text(), "\t2one1\r\ntwo");
    expect_good_end();
}

TEST_F(Keys, ControlWithAKeyThatHasNoNamePrintsNothing)
{
    edit("one");
    press({"ctrl+XF86AudioMute", "ctrl+XF86Eject"});
    EXPECT_EQ(evaluated_text(), "one");
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
