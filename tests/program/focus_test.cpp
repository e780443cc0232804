// Where keys go, pressed on a real keyboard, and how lists and the name field are left.
#include "tests/program/program_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/wait.hpp"
#include "ui/fixed_text.hpp"

namespace
{

using namespace rig;

class KeyboardFocus : public ProgramRig
{
protected:
    void open(const std::string &text)
    {
        write_file(source("a.txt"), text);
        start({.bottom = true});
        driver->choose("--", "a.txt");
    }
};

TEST_F(KeyboardFocus, IsTheEditorsAfterOpeningAndAfterEveryButton)
{
    open("the text");
    screen->type(U"1");
    EXPECT_EQ(evaluated_text(), "1the text");
    screen->type(U"2");
    driver->press("Raw");
    screen->type(U"3");
    EXPECT_EQ(evaluated_text(), "123the text");
    expect_good_end();
}

TEST_F(KeyboardFocus, IsTheNameFieldsAtPlusAndEscapeGivesItBack)
{
    open("the text");
    driver->press("+");
    screen->type(U".never");
    screen->key("Escape");
    screen->type(U"X");
    EXPECT_EQ(evaluated_text(), "Xthe text");
    driver->press("+");
    screen->type(U"2");
    screen->key("Return");
    EXPECT_TRUE(wait_until([&] { return read_file(source("a.txt2")) == "Xthe text"; }));
    screen->type(U"Y");
    EXPECT_EQ(evaluated_text(), "XYthe text");
    EXPECT_FALSE(std::filesystem::exists(source("a.txt.never")));
    expect_good_end();
}

TEST_F(KeyboardFocus, IsLeftToTheEditorByAListThatEscapeCloses)
{
    open("the text");
    screen->click(driver->place_of("0"));
    screen->type(U"not taken");
    screen->key("Escape");
    screen->type(U"X");
    EXPECT_EQ(evaluated_text(), "Xthe text");
    expect_good_end();
}

TEST_F(KeyboardFocus, GoesToTheLineThatADoubleClickedLineOfTheOutputNames)
{
    std::string source_text;
    for (int line = 1; line <= 60; ++line)
        source_text += "line " + std::to_string(line) + '\n';
    open(source_text);
    const std::string message = "source:50: unexpected symbol";
    write_script(tools.file("mero"), "echo '" + message + "'\ntouch " + place.file("ended"));
    driver->press("Evaluate");
    ASSERT_TRUE(wait_until([&] { return std::filesystem::exists(place.file("ended")); }));
    EXPECT_TRUE(wait_until([&] { return children_of(vimbo->id()) == 0; }));
    screen->settle();
    ::vimbo::set_text(driver->panels().app().evaluation.eval_text,
                      "Compilling.\nEvaluation:\n" + message + "\n\nStatus: ok.\n");
    const struct nk_rect row = driver->bounds_of(message);
    screen->click_times({static_cast<int>(row.x) + 30, static_cast<int>(row.y) + 8}, 2);
    screen->type(U"X");
    const std::string text = evaluated_text();
    EXPECT_NE(text.find("\nXline 50\n"), std::string::npos) << text;
    expect_good_end();
}

TEST_F(KeyboardFocus, OfTheOutputBoxTakesWhatIsTypedAndCopiesAll)
{
    open("");
    write_script(tools.file("mero"), "echo output");
    driver->press("Evaluate");
    EXPECT_TRUE(wait_until([&] { return children_of(vimbo->id()) == 0; }));
    screen->settle();
    const point label = driver->place_of("Raw");
    screen->click({label.x, label.y + 60});
    screen->key("End");
    screen->type(U"noted");
    screen->key("ctrl+c");
    screen->click(driver->editor());
    screen->key("ctrl+v");
    const std::string text = evaluated_text();
    EXPECT_TRUE(text.starts_with("Compilling.")) << text;
    EXPECT_TRUE(text.ends_with("\nEvaluation:\noutput\n\nStatus: ok.\nnoted")) << text;
    expect_good_end();
}

} // namespace
