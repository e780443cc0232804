// Sources and trays with what this system alone allows: permissions, links, pipes, and
// any character in a name.
#include "tests/faults/linux/failing_disk.hpp"
#include "tests/faults/source_rig.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace
{

using namespace rig;

TEST_F(FaultySource, WithoutReadPermissionBringsBackTheTextOpenedBefore)
{
    ASSERT_EQ(chmod(place.path().c_str(), 0755), 0);
    write_file(source("secret"), "not for everybody");
    ASSERT_EQ(chmod(source("secret").c_str(), 0), 0);
    const without_privileges other;
    pick("secret");
    open_file = source("secret"); // it is the one that was picked
    expect_as_before();
}

TEST_F(FaultySource, ThatIsNoRegularFileIsNotListed)
{
    ASSERT_EQ(mkfifo(source("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(source("directory"));
    std::filesystem::create_symlink("nowhere", source("dangling"));
    std::filesystem::create_symlink(".", source("directory/up"));
    write_file(source("directory/b.txt"), "text of b");
    std::filesystem::create_symlink("../directory", source("directory/around"));
    open_list();
    for (const char *name : {"pipe", "directory", "dangling", "up", "around"})
        EXPECT_FALSE(listed(name)) << name;
    EXPECT_TRUE(listed("b.txt"));
    EXPECT_FALSE(panels.find("b.txt", 1)) << "once, though links lead round in a circle";
    expect_as_before();
}

TEST_F(FaultySource, ThatIsALoopOfLinksIsNotListed)
{
    std::filesystem::create_symlink("loop2", source("loop1"));
    std::filesystem::create_symlink("loop1", source("loop2"));
    write_file(source("sub/b.txt"), "text of b");
    open_list();
    EXPECT_FALSE(listed("loop1"));
    EXPECT_FALSE(listed("loop2"));
    EXPECT_TRUE(listed("a.txt"));
    EXPECT_TRUE(listed("b.txt"));
    expect_as_before();
    vimbo::open_source(panels.app().bar, panels.app().editor, source("loop1").c_str());
    panels.frame();
    open_file = source("loop1");
    expect_as_before();
}

TEST_F(FaultySource, ThatCannotBeReachedIsNotListed)
{
    ASSERT_EQ(chmod(place.path().c_str(), 0755), 0);
    for (const char *directory : {"unreadable", "unreachable"})
        write_file(source(directory) + "/" + directory + ".txt", "");
    ASSERT_EQ(chmod(source("unreadable").c_str(), 0), 0);
    ASSERT_EQ(chmod(source("unreachable").c_str(), 0744), 0);
    const without_privileges other;
    open_list();
    EXPECT_FALSE(listed("unreadable.txt"));
    EXPECT_FALSE(listed("unreachable.txt"));
    EXPECT_TRUE(listed("a.txt"));
    expect_as_before();
}

TEST_F(FaultySource, WithTooLongAPathIsNotOpened)
{
    const std::string name(20, 'n');
    for (const std::size_t length : {259, 260, 261, 4000}) {
        std::string path = sources;
        const std::size_t parents = length - name.size() - 1;
        while (path.size() < parents) {
            std::size_t part = std::min<std::size_t>(parents - path.size() - 1, 200);
            // What is left has to be a name as well.
            part -= parents - path.size() - 1 - part == 1 ? 1 : 0;
            path += '/' + std::string(part, 'd');
        }
        path += '/' + name.substr(0, 16) + std::to_string(1000 + length % 1000);
        ASSERT_EQ(path.size(), length);
        write_file(path, "deep down");
        pick(std::filesystem::path(path).filename().string());
        if (length < 260) {
            text = "deep down";
            open_file = path;
        }
        expect_as_before();
        std::filesystem::remove_all(sources + "/" + std::string(200, 'd'));
        panels.frame();
    }
}

TEST_F(FaultySource, WithAnyCharacterInItsNameIsOpenedSavedAndDeleted)
{
    const char *names[] = {"with blanks in it", "'single' and \"double\" quotes",
                           "$(touch gone); `ls` & *", "-r", "\xff\xfe"};
    for (const std::string name : names) {
        write_file(source(name), "text of " + name);
        pick_and_expect(name, "text of " + name);
        if (name[0] == '\xff')
            continue; // nothing that can be typed
        EXPECT_EQ(save_as(name + "2"), "");
        EXPECT_EQ(read_file(source(name + "2")), "text of " + name);
        open_file = source(name + "2");
        expect_as_before();
        panels.click("-");
        panels.click("!");
        EXPECT_FALSE(std::filesystem::exists(source(name + "2")));
        open_file = "-";
        expect_as_before();
        write_file(source("a.txt"), "the text");
        vimbo::open_source(panels.app().bar, panels.app().editor, source("a.txt").c_str());
    }
}

TEST_F(FaultySource, WithALineFeedInItsNameIsOpenedAndDeleted)
{
    const std::string name = "two\nlines";
    write_file(source(name), "text of it");
    pick_and_expect(name, "text of it");
    panels.click("-");
    panels.click("!");
    EXPECT_FALSE(std::filesystem::exists(source(name)));
    open_file = "-";
    expect_as_before();
}

TEST_F(FaultySource, ThatVanishesUnderTheClickBringsBackTheTextOpenedBefore)
{
    write_file(source("gone"), "too late");
    before_open = [this] { std::filesystem::remove(source("gone")); };
    pick("gone");
    before_open = nullptr;
    EXPECT_FALSE(std::filesystem::exists(source("gone")));
    open_file = source("gone"); // it is the one that was picked
    expect_as_before();
}

TEST_F(TrayName, WithBlanksSingleQuotesAndLineFeedsReachesTheToolsUnchanged)
{
    for (const char *name : {"two  blanks ", "a 'quoted' one", "it's", "a; b & c | d > e * ?",
                             "two\nlines", "-s", "#", "~"})
        expect_passed_on(name);
}

TEST_F(TrayName, WithWhatAShellWouldExpandReachesTheToolsUnchanged)
{
    for (const char *name : {"a$HOME", "b`id`", "c$(id)", "${HOME}", "back\\slash", "\\", "\\$HOME",
                             "$", "!!", "\xff"})
        expect_passed_on(name);
}

TEST_F(TrayName, WithADoubleQuoteIsRefused)
{
    tools.put("plimb", "numbers 50 0.5");
    run("↻");
    std::filesystem::remove(tools.file("plimb.arguments"));
    for (const char *name : {"\"both\"", "o\"pen", "a\\\"; id"}) {
        choose(name);
        tools.put("mero", "exit 3");
        const std::string complaint = "error: the tray's path has a double quote.\n";
        EXPECT_EQ(run_and_complaint("Integrate"), complaint);
        EXPECT_STREQ(panels.app().evaluation.eval_text,
                     "Error: the tray's path has a double quote.\n");
        EXPECT_EQ(run_and_complaint("↻"), complaint);
        EXPECT_EQ(tools.arguments_of("mero") + tools.arguments_of("plimb"), "")
            << "one was started";
        EXPECT_EQ(panels.app().statistics.run.stats_locality[0], 0.5F);
        EXPECT_FALSE(std::filesystem::exists(tray + "/_mosaics"));
        expect_as_before();
    }
    EXPECT_EQ(run_and_complaint("Evaluate"), "") << "it is told of no tray";
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n/tmp//vimbo\n");
}

} // namespace
