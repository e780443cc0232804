// What other programs have in the desktop's clipboard, and how it gets into the
// editor.
#include "tests/program/program_rig.hpp"
#include "tests/support/clipboard_owner.hpp"
#include "tests/support/texts.hpp"

#include <algorithm>
#include <chrono>

namespace
{

using namespace rig;

// So many bytes, in lines that differ.
std::string numbered_lines(std::size_t bytes)
{
    std::string text;
    for (int line = 0; text.size() < bytes; ++line)
        text += std::to_string(line) + " of many lines\n";
    text.resize(bytes);
    return text;
}

class Clipboard : public ProgramRig
{
protected:
    // Starts the program and pastes behind the source's own text, "here: ".
    void start_and_paste()
    {
        write_file(source("a.txt"), "here: ");
        start({.bottom = true});
        driver->choose("--", "a.txt");
        screen->click(driver->editor());
        screen->key("End");
        paste();
    }

    // Throws when the window hangs.
    void paste()
    {
        screen->key("ctrl+v");
    }

    void put(const clipboard_owner::manner &how)
    {
        owner.reset();
        owner.emplace(screen->name(), how);
    }

    std::optional<clipboard_owner> owner;
};

TEST_F(Clipboard, ThatIsEmptyPastesNothingAndIsNoError)
{
    start_and_paste();
    EXPECT_EQ(evaluated_text(), "here: ");
    expect_good_end();
}

TEST_F(Clipboard, PastesAnotherProgramsText)
{
    start_and_paste();
    put({.text = "first\n\tsecond"});
    paste();
    EXPECT_EQ(evaluated_text(), "here: first\n\tsecond");
    expect_good_end();
}

TEST_F(Clipboard, WaitsForTheAnswerToItsOwnRequest)
{
    start_and_paste();
    put({.text = "asked for", .strays = true});
    paste();
    EXPECT_EQ(evaluated_text(), "here: asked for");
    EXPECT_EQ(owner->requests(), 1) << "another request's refusal was taken for its own";
    expect_good_end();
}

TEST_F(Clipboard, PastesCharactersOfSeveralBytes)
{
    start_and_paste();
    put({.text = "µm – 12345"});
    paste();
    EXPECT_EQ(evaluated_text(), "here: µm – 12") << "three bytes are cut at the end";
    expect_good_end();
}

TEST_F(Clipboard, PastesLatin1WhereThereIsNoUtf8)
{
    start_and_paste();
    put({.text = "10 \xB5m, \xFC"
                 "ber \x80\xBF\xC0\xFF",
         .kind = "STRING"});
    paste();
    screen->type(U"......");
    EXPECT_EQ(evaluated_text(), "here: 10 µm, über \u0080¿Àÿ") << "six bytes are cut at the end";
    expect_good_end();
}

TEST_F(Clipboard, PastesALargeTextWholeOrInPieces)
{
    const std::string large = numbered_lines(60000);
    start_and_paste();
    put({.text = large});
    paste();
    EXPECT_TRUE(same_text(evaluated_text(), "here: " + large));
    screen->click(driver->editor());
    screen->key("ctrl+a");
    put({.text = large, .piece = 4000});
    paste();
    EXPECT_TRUE(same_text(evaluated_text(), large));
    expect_good_end();
}

TEST_F(Clipboard, PastesOfAHugeTextWhatFits)
{
    const std::string huge = numbered_lines(300000);
    for (const std::size_t piece : {0U, 50000U}) {
        start_and_paste();
        put({.text = huge, .piece = piece});
        paste();
        // An insertion leaves the last byte free.
        EXPECT_TRUE(same_text(evaluated_text(), ("here: " + huge).substr(0, 65535))) << piece;
        expect_good_end();
        owner.reset();
    }
}

TEST_F(Clipboard, PastesNothingOfAPicture)
{
    start_and_paste();
    put({.text = "\x89PNG", .kind = "image/png"});
    paste();
    EXPECT_EQ(evaluated_text(), "here: ");
    EXPECT_EQ(owner->requests(), 2) << "for both kinds of text";
    expect_good_end();
}

TEST_F(Clipboard, PastesNothingOfAnOwnerThatHangs)
{
    start_and_paste();
    put({.text = "never seen", .silent = true});
    paste();
    paste();
    EXPECT_EQ(evaluated_text(), "here: ");
    EXPECT_EQ(owner->requests(), 2);
    put({.text = "seen"});
    screen->click(driver->editor());
    screen->key("End");
    paste();
    EXPECT_EQ(evaluated_text(), "here: seen");
    expect_good_end();
}

TEST_F(Clipboard, WaitsForAnOwnerThatHangsOnlyTheFirstTime)
{
    start_and_paste();
    put({.silent = true});
    // A second for the first one; a held key asks again and again.
    auto shortest = std::chrono::steady_clock::duration::max();
    for (int i = 0; i < 6; ++i) {
        const auto start = std::chrono::steady_clock::now();
        paste();
        shortest = std::min(shortest, std::chrono::steady_clock::now() - start);
    }
    EXPECT_LT(shortest, std::chrono::milliseconds(950)) << "each paste waits anew";
    EXPECT_EQ(evaluated_text(), "here: ");
}

TEST_F(Clipboard, WaitsAgainForAnOwnerThatTakesItsTime)
{
    start_and_paste();
    put({.text = "late ", .delay = std::chrono::milliseconds(300)});
    paste();
    paste();
    EXPECT_EQ(evaluated_text(), "here: late late ") << "it was given up as one that hangs";
    expect_good_end();
}

TEST_F(Clipboard, PastesNothingOfAnOwnerThatHangsHalfWay)
{
    start_and_paste();
    put({.text = "the whole text", .piece = 4, .pieces = 2});
    paste();
    EXPECT_EQ(evaluated_text(), "here: ");
    EXPECT_EQ(owner->requests(), 1);
    expect_good_end();
}

TEST_F(Clipboard, GivesTheProgramsOwnTextAgainAfterAnother)
{
    start_and_paste();
    put({.text = "other"});
    paste();
    screen->key("ctrl+a");
    screen->key("ctrl+c");
    screen->key("End");
    paste();
    EXPECT_EQ(evaluated_text(), "here: otherhere: other");
    expect_good_end();
}

TEST_F(Clipboard, LeavesTheProgramsTextToTheManagerAtTheEnd)
{
    start_and_paste();
    const std::string large = numbered_lines(60000);
    put({.text = large});
    paste();
    screen->key("ctrl+a");
    screen->key("ctrl+c");
    put({.selection = "CLIPBOARD_MANAGER"});
    expect_good_end();
    EXPECT_TRUE(same_text(owner->kept_text(), "here: " + large));
}

TEST_F(Clipboard, DoesNotDelayTheEndWhereTheManagerHangs)
{
    start_and_paste();
    screen->key("ctrl+a");
    screen->key("ctrl+c");
    put({.silent = true, .selection = "CLIPBOARD_MANAGER"});
    expect_good_end();
    EXPECT_EQ(owner->requests(), 1);
}

} // namespace
