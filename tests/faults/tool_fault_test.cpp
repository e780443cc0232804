// What tools that misbehave leave on the panels: their end is taken, and the
// edited text and the tray are as they were.
#include "tests/support/panel_bench.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/x_server.hpp" // wait_until

#include <gtest/gtest.h>

namespace
{

using namespace bench;

std::string run(const std::string &script)
{
    const tool_path tools;
    write_script(tools.file("mero"), script);
    write_file(tools.file("source"), "the text");
    panel_bench desk;
    vimbo::app_state &app = desk.app();
    app.frame.ui_flags |= vimbo::ui_flag::bottom_shown;
    std::snprintf(app.mosaic.tray_directory, sizeof app.mosaic.tray_directory, "%s",
                  tools.folder().c_str());
    vimbo::open_source(app.bar, app.editor, tools.file("source").c_str());
    desk.click("Evaluate");
    EXPECT_TRUE(wait_until(
        [&] {
            desk.frame();
            return !vimbo::has_flag(app.frame.ui_flags, vimbo::ui_flag::eval_running);
        },
        std::chrono::seconds(60)));
    EXPECT_STREQ(app.editor.source_text, "the text");
    EXPECT_EQ(app.mosaic.tray_directory, tools.folder());
    return app.evaluation.eval_text;
}

TEST(ToolFault, FloodOfAGigabyteIsDrainedToItsOwnStatus)
{
    const std::string text = run("yes | head -c 1000000000\nexit 3\n");
    EXPECT_NE(text.find("Status: uknown.\n"), std::string::npos) << text;
}

TEST(ToolFault, FloodOfZeroBytesIsDrainedToItsOwnStatus)
{
    const std::string text = run("head -c 1000000000 /dev/zero\nexit 3\n");
    EXPECT_NE(text.find("Status: uknown.\n"), std::string::npos) << text;
}

TEST(ToolFault, InvalidTextAndTerminalEscapesAreOnlyText)
{
    const std::string text = run("printf '\\377\\300\\033[2J\\033]0;x\\007end'\n");
    EXPECT_NE(text.find("\xff\xc0\x1b[2J\x1b]0;x\aend\nStatus: ok.\n"), std::string::npos) << text;
}

} // namespace
