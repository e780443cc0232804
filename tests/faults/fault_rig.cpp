#include "tests/faults/fault_rig.hpp"

#include "sources/path_name.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"

#include <unistd.h>

namespace rig
{

FaultRig::FaultRig() : sources(place.file("src")), tray(place.file("tray"))
{
    let_all_calls_work();
    // Whatever a test before has left there.
    std::filesystem::remove_all(handed_text_path());
    std::filesystem::remove_all("/tmp/mero.end");
    std::filesystem::create_directory(sources);
    std::filesystem::create_directory(tray);
    vimbo::app_state &app = panels.app();
    app.bar.source_directory = sources.c_str();
    vimbo::initialise_panels(app);
    vimbo::choose_tray(app.frame, app.mosaic, tray.c_str());
    app.frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::stats_shown;
    open(sources + "/a.txt", "the text\nof two lines\n");
}

FaultRig::~FaultRig()
{
    let_all_calls_work();
    write_file(tools.file("go"), ""); // whatever still waits for it
    EXPECT_TRUE(finish());
    EXPECT_TRUE(nothing_left());
}

std::string FaultRig::open_name() const
{
    return vimbo::path_name_part(panels.app().bar.source_path);
}

void FaultRig::open(const std::string &path, const std::string &content)
{
    write_file(path, content);
    vimbo::open_source(panels.app().bar, panels.app().editor, path.c_str());
    panels.frame();
    text = content;
    open_file = path;
}

void FaultRig::expect_as_before()
{
    EXPECT_TRUE(edited() == text) << edited().substr(0, 1000);
    EXPECT_EQ(open_path(), open_file);
    EXPECT_EQ(panels.app().mosaic.tray_directory, tray);
    EXPECT_EQ(panels.app().mosaic.mosaic_path, tray + "/_mosaics/0.mmv");
}

bool FaultRig::finish()
{
    constexpr std::uint32_t running = vimbo::ui_flag::eval_running | vimbo::ui_flag::stats_running;
    return wait_until(
        [this] {
            panels.frame();
            return (panels.app().frame.ui_flags & running) == 0;
        },
        std::chrono::seconds(120));
}

std::string FaultRig::run(std::string_view button)
{
    panels.click(button);
    EXPECT_TRUE(finish());
    return panels.app().evaluation.eval_text;
}

std::string FaultRig::run_and_complaint(std::string_view button)
{
    testing::internal::CaptureStderr();
    run(button);
    return testing::internal::GetCapturedStderr();
}

std::string FaultRig::save_as(const std::string &name)
{
    panels.click("+");
    panels.frame();
    panels.click(open_name());
    panels.key(NK_KEY_TEXT_SELECT_ALL);
    panels.frame();
    panels.type(name);
    panels.frame();
    testing::internal::CaptureStderr();
    panels.key(NK_KEY_ENTER);
    panels.frame();
    return testing::internal::GetCapturedStderr();
}

bool FaultRig::nothing_left()
{
    // Without a pause, as each frame drops no more than a pipe holds.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (children_of(getpid()) != 0 && std::chrono::steady_clock::now() < deadline)
        vimbo::collect_released_commands();
    return children_of(getpid()) == 0;
}

} // namespace rig
