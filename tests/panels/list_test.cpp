// What the lists of sources and trays have in them, and how they are closed.
#include "tests/support/panel_rig.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace
{

using namespace rig;

class List : public testing::Test
{
protected:
    List()
    {
        std::filesystem::current_path(place.path());
    }

    ~List() override
    {
        std::filesystem::current_path(before);
    }

    // What the list under this label has in it, in its order; it is open then.
    std::vector<std::string> items_of(const std::string &label)
    {
        panels.frame();
        panels.frame();
        const std::size_t without_it = panels.texts().size();
        panels.click(label);
        std::vector<std::string> items;
        // The list is drawn last.
        for (std::size_t i = without_it; i < panels.texts().size(); ++i)
            items.push_back(panels.texts()[i].text);
        return items;
    }

    point place_of_text_starting(std::string_view start) const
    {
        for (const drawn_text &text : panels.texts())
            if (text.text.starts_with(start))
                return {static_cast<int>(text.bounds.x) + 4, static_cast<int>(text.bounds.y) + 4};
        throw std::runtime_error("no text starts so");
    }

    void close_list()
    {
        panels.click(point{2, 400});
        panels.frame();
    }

    const std::filesystem::path before = std::filesystem::current_path();
    const scratch_directory place;
    panel_rig panels;
};

TEST_F(List, OfTraysLeavesTheirOwnDirectoryOutHoweverItIsWritten)
{
    std::filesystem::create_directories("trays/one");
    std::filesystem::create_directories("trays/two");
    for (const char *tray : {"./trays/one", "./trays//one", "trays///one"}) {
        vimbo::choose_tray(panels.app().frame, panels.app().mosaic, tray);
        std::vector<std::string> items = items_of("one");
        std::ranges::sort(items);
        EXPECT_EQ(items, (std::vector<std::string>{"one", "two"})) << tray;
        close_list();
    }
}

TEST_F(List, IsSortedByNameWithinEachDirectory)
{
    for (const char *name :
         {"z", "b.txt", "a", "B", "sub/y", "sub/c", "sub/x/2", "sub/x/1", "aa/q"})
        write_file(std::string("src/") + name, "");
    panels.app().bar.source_directory = "src";
    EXPECT_EQ(items_of("--"),
              (std::vector<std::string>{"B", "a", "b.txt", "z", "q", "c", "y", "1", "2"}));
}

TEST_F(List, OfTraysIsSortedByNameEachBeforeWhatItHolds)
{
    for (const char *name :
         {"trays/two/_mosaics", "trays/one/_mosaics", "trays/one/more", "trays/3"})
        std::filesystem::create_directories(name);
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, "trays/one");
    EXPECT_EQ(items_of("one"),
              (std::vector<std::string>{"3", "one", "_mosaics", "more", "two", "_mosaics"}));
}

TEST_F(List, IsClosedByEscape)
{
    std::filesystem::create_directories("trays/one");
    write_file("src/a.txt", "");
    panels.app().bar.source_directory = "src";
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, "trays/one");
    panels.app().frame.ui_flags |= vimbo::ui_flag::stats_shown;
    for (const char *list : {"--", "one", "0", "Locality"}) {
        panels.frame();
        panels.frame();
        const std::size_t closed = panels.texts().size();
        panels.click(place_of_text_starting(list));
        EXPECT_GT(panels.texts().size(), closed) << list;
        panels.key(NK_KEY_TEXT_RESET_MODE);
        panels.frame();
        panels.frame();
        EXPECT_EQ(panels.texts().size(), closed) << list;
        // The window takes the mouse again at once.
        panels.click("|");
        EXPECT_FALSE(vimbo::has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::stats_shown));
        panels.click("|");
    }
    panels.key(NK_KEY_TEXT_RESET_MODE); // where none is open it does nothing
    panels.frame();
}

} // namespace
