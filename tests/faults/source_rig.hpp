// The operator's ways with sources and trays that have something wrong with them.
#pragma once

#include "tests/faults/fault_rig.hpp"
#include "tests/support/tools.hpp"

namespace rig
{

class FaultySource : public FaultRig
{
protected:
    std::string source(const std::string &name) const
    {
        return sources + '/' + name;
    }

    void open_list()
    {
        panels.click(open_name());
        panels.frame();
    }

    // Opens it as the operator does.
    void pick(const std::string &name)
    {
        open_list();
        // The bar's own label comes first.
        panels.click(name, name == open_name() ? 1 : 0);
        panels.frame();
    }

    bool listed(const std::string &name)
    {
        return panels.find(name, name == open_name() ? 1 : 0).has_value();
    }

    void pick_and_expect(const std::string &name, const std::string &wanted)
    {
        pick(name);
        text = wanted;
        open_file = source(name);
        expect_as_before();
    }

    // The open one is deleted as the operator does, and is still there.
    void expect_to_outlive_its_deletion(const std::string &name)
    {
        panels.click("-");
        panels.click("!");
        open_file = "-";
        expect_as_before();
        vimbo::open_source(panels.app().bar, panels.app().editor, source("a.txt").c_str());
        panels.frame();
        open_list();
        EXPECT_TRUE(listed(name));
    }

    // Each of the editor's own movements and changes once, and back again.
    void work_on_it()
    {
        panels.click(point{14, 52});
        for (const nk_keys key :
             {NK_KEY_TEXT_END, NK_KEY_LEFT, NK_KEY_UP, NK_KEY_TEXT_WORD_LEFT, NK_KEY_SCROLL_UP,
              NK_KEY_TEXT_LINE_END, NK_KEY_BACKSPACE, NK_KEY_TEXT_START, NK_KEY_DEL, NK_KEY_DOWN,
              NK_KEY_TEXT_SELECT_ALL, NK_KEY_COPY, NK_KEY_TEXT_END, NK_KEY_ENTER}) {
            panels.key(key);
            panels.frame();
            panels.frame();
        }
        panels.type("typed");
        panels.frame();
        // No further: the text that was open before is a step, too.
        for (int i = 0; i < 10 && edited() != text; ++i) {
            panels.key(NK_KEY_TEXT_UNDO);
            panels.frame();
            panels.frame();
        }
    }
};

class TrayName : public FaultRig
{
protected:
    // What the tools are told of this tray's mosaic.
    void expect_passed_on(const std::string &name)
    {
        choose(name);
        tools.put("mero", "exit 3");
        tools.put("plimb", "exit 3");
        EXPECT_EQ(run_and_complaint("Integrate"), "");
        EXPECT_EQ(run_and_complaint("↻"), "");
        const std::string path = tray + "/_mosaics/0.mmv\n";
        EXPECT_EQ(tools.arguments_of("mero"), "-s\n35.000000\n" + handed_text_path() + "\n" + path);
        EXPECT_EQ(tools.arguments_of("plimb"), path);
        EXPECT_TRUE(std::filesystem::is_directory(utf8_path(tray + "/_mosaics")));
        expect_as_before();
    }

    void choose(const std::string &name)
    {
        tray = place.file(name);
        std::filesystem::create_directory(utf8_path(tray));
        vimbo::choose_tray(panels.app().frame, panels.app().mosaic, tray.c_str());
    }
};

} // namespace rig
