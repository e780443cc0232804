// Trays whose names mean something to a shell, and the tools that are told of them.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

namespace
{

using namespace rig;

class Tray : public ProgramRig
{
protected:
    void start_on(const std::string &tray)
    {
        std::filesystem::create_directory(place.file(tray));
        start({.more = {"-t", place.file(tray)}, .bottom = true, .statistics = true});
    }
};

class TrayNamed : public Tray, public testing::WithParamInterface<const char *>
{
};

INSTANTIATE_TEST_SUITE_P(LikeAShellsWords, TrayNamed,
                         testing::Values("a$HOME", "b`touch ran`", "c$(touch ran)", "d\\e\\",
                                         "f\\$HOME", "g!h", "two\nlines"));

TEST_P(TrayNamed, ReachesTheToolsUnchanged)
{
    tools.put("mero", "exit 0");
    tools.put("plimb", "numbers 50 0.5");
    start_on(GetParam());
    driver->press("Integrate");
    const std::string path = place.file(GetParam()) + "/_mosaics/0.mmv\n";
    EXPECT_EQ(awaited_arguments("mero"), "-s\n35.000000\n/tmp//vimbo\n" + path);
    driver->press("↻");
    EXPECT_EQ(awaited_arguments("plimb"), path);
    EXPECT_FALSE(std::filesystem::exists(place.file("ran"))) << "the name was run";
    expect_good_end();
}

TEST_F(Tray, WithADoubleQuoteIsReportedInOneLineEachTime)
{
    tools.put("mero", "exit 0");
    tools.put("plimb", "numbers 50 0.5");
    start_on("a\"b");
    driver->press("Integrate");
    driver->press("↻");
    const std::string complaint = "error: the tray's path has a double quote.\n";
    EXPECT_TRUE(wait_until([&] { return complaints() == complaint + complaint; })) << complaints();
    EXPECT_EQ(tools.arguments_of("mero") + tools.arguments_of("plimb"), "");
    expect_good_end(complaint + complaint);
}

} // namespace
