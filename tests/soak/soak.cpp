// Many runs in one process, and a monkey at the keys.
//
//   soak VIMBO DIVISOR
#include "tests/support/child_watch.hpp"
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/ui_driver.hpp"
#include "tests/support/wait.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <thread>

#include <unistd.h>

namespace
{

using namespace rig;

constexpr int width = 600;
constexpr int height = 1160;

void require(bool held, const std::string &what)
{
    if (!held)
        throw std::runtime_error(what);
}

struct rigged_program {
    explicit rigged_program(const char *program_path)
        : screen(1000, 1300), sources(place.file("src")), tray(place.file("tray"))
    {
        for (const char *name : {"src/a.txt", "src/b.txt", "src/sub/c.txt"})
            write_file(place.file(name), std::string("text of ") + name + '\n');
        write_file(place.file("tray/_mosaics/0.mmv"), mosaic_bytes({{0, 0}, {9999999, 9999999}}));
        // Each run adds a byte, so that its start shows.
        write_script(tools.file("mero"), "printf x >>" + tools.file("runs") + "\necho done\n");
        write_script(tools.file("plimb"), "printf x >>" + tools.file("runs") +
                                              "\nfor i in 1 2 3 4 5 6 7 8 9 10; do "
                                              "echo .5 .5 .5 .5 .5; done\n");
        vimbo.emplace(program::options{
            .arguments = {program_path, "-s", sources, "-t", tray, "-w",
                          std::to_string(width) + ',' + std::to_string(height)},
            // With memory given back at once: what the renderer's
            // work leaves in the heap hangs on the machine's load.
            .environment = {"DISPLAY=" + screen.name(), "MALLOC_ARENA_MAX=1",
                            "MALLOC_MMAP_THRESHOLD_=32768", "MALLOC_TRIM_THRESHOLD_=65536"},
            .directory = place.path().string(),
            .output = place.file("output")});
        window = wait_for_window(screen);
        driver.emplace(screen, ui_driver::started_with{width, height, sources, tray});
    }

    void end()
    {
        screen.close_window(window);
        require(vimbo->wait_for_end() == 0, "the program did not end with status 0");
    }

    const scratch_directory place;
    const tool_path tools;
    x_server screen;
    std::string sources, tray;
    std::optional<program> vimbo;
    std::optional<ui_driver> driver;
    unsigned long window = 0;
};

std::uintmax_t runs_of(const rigged_program &at)
{
    std::error_code none_yet;
    const std::uintmax_t size = std::filesystem::file_size(at.tools.file("runs"), none_yet);
    return none_yet ? 0 : size;
}

void run_once(rigged_program &at, point button)
{
    const std::uintmax_t before = runs_of(at);
    at.screen.move(button);
    at.screen.press();
    at.screen.release();
    require(wait_until([&] { return runs_of(at) > before; }), "a press started no tool");
    require(wait_until([&] { return children_of(at.vimbo->id()) == 0; }), "a child was left");
    at.screen.settle();
}

struct holdings {
    std::size_t descriptors, threads, memory;
};

holdings held_by(const rigged_program &at)
{
    return {open_descriptors(at.vimbo->id()), threads_of(at.vimbo->id()),
            resident_bytes(at.vimbo->id())};
}

void soak(const char *program_path, int runs)
{
    // A kibibyte a run, and what the renderer's heap varies by.
    const std::size_t granted =
        std::max(static_cast<std::size_t>(runs) << 10, std::size_t{1} << 18);
    rigged_program at(program_path);
    at.driver->show_bottom();
    at.driver->show_statistics();
    const point evaluate = at.driver->place_of("Evaluate");
    const point measure = at.driver->place_of("↻");
    // What is allocated once is there after the first runs.
    for (int i = 0; i < 20; ++i)
        run_once(at, i % 2 == 0 ? evaluate : measure);
    const holdings before = held_by(at);
    for (int i = 0; i < runs; ++i) {
        run_once(at, evaluate);
        run_once(at, measure);
    }
    const holdings after = held_by(at);
    std::printf("soak: %d evaluations and measurements: descriptors %zu to %zu, threads %zu to "
                "%zu, memory %zu to %zu KiB\n",
                runs, before.descriptors, after.descriptors, before.threads, after.threads,
                before.memory >> 10, after.memory >> 10);
    require(after.descriptors <= before.descriptors, "descriptors have grown");
    require(after.threads <= before.threads, "threads have grown");
    require(after.memory <= before.memory + granted, "memory has grown by more than it may");
    at.end();
}

// Through the panels alone, which takes a hundredth of the time.
void soak_panels(int runs)
{
    constexpr std::size_t granted = std::size_t{1} << 20;
    constexpr std::uint32_t running = vimbo::ui_flag::eval_running | vimbo::ui_flag::stats_running;
    const tool_path tools;
    write_script(tools.file("mero"), "echo done\n");
    write_script(tools.file("plimb"), "echo .5\n");
    panel_rig panels;
    vimbo::app_state &app = panels.app();
    app.frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::stats_shown;
    const auto run = [&](const char *button) {
        panels.click(button);
        require(wait_until([&] {
                    panels.frame();
                    return (app.frame.ui_flags & running) == 0;
                }),
                "a run on the panels does not end");
    };
    const auto held = [] {
        require(wait_until([] {
                    vimbo::collect_released_commands();
                    return children_of(getpid()) == 0;
                }),
                "a child was left on the panels");
        return holdings{open_descriptors(getpid()), threads_of(getpid()), resident_bytes(getpid())};
    };
    for (int i = 0; i < 20; ++i)
        run(i % 2 == 0 ? "Evaluate" : "↻");
    const holdings before = held();
    for (int i = 0; i < runs; ++i)
        run(i % 2 == 0 ? "Evaluate" : "↻");
    const holdings after = held();
    std::printf("soak: %d short runs on the panels: descriptors %zu to %zu, threads %zu to %zu, "
                "memory %zu to %zu KiB, no child left\n",
                runs, before.descriptors, after.descriptors, before.threads, after.threads,
                before.memory >> 10, after.memory >> 10);
    require(after.descriptors <= before.descriptors, "descriptors have grown on the panels");
    require(after.threads <= before.threads, "threads have grown on the panels");
    require(after.memory <= before.memory + granted, "memory has grown on the panels");
}

// Both tools say nothing for so long, and are waited for.
void be_silent(const char *program_path, int seconds)
{
    rigged_program at(program_path);
    for (const char *name : {"mero", "plimb"})
        write_script(at.tools.file(name), "exec " VIMBO_STUB_TOOL " await " + at.place.file("go"));
    at.driver->show_bottom();
    at.driver->show_statistics();
    at.driver->press("Evaluate");
    at.driver->press("↻");
    for (int i = 0; i < seconds; ++i) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        at.screen.settle();
        require(children_of(at.vimbo->id()) == 2, "a silent tool was given up");
    }
    write_file(at.place.file("go"), "");
    require(wait_until([&] { return children_of(at.vimbo->id()) == 0; }), "a child was left");
    std::printf("soak: %d seconds of silence\n", seconds);
    at.end();
}

class monkey
{
public:
    explicit monkey(rigged_program &at) : place(at), quit(at.driver->place_of("X")) {}

    void act()
    {
        switch (pick(0, 9)) {
        case 0:
            place.screen.scroll(pick(-3, 3));
            break;
        case 1:
        case 2:
            press_key();
            break;
        case 3:
            if (pick(0, 9) == 0)
                place.screen.resize_window(place.window, pick(1, 900), pick(1, 1240));
            break;
        default:
            click();
        }
    }

private:
    int pick(int least, int most)
    {
        // The library's own distributions differ from version to version.
        return least + static_cast<int>(random() % static_cast<unsigned int>(most - least + 1));
    }

    void press_key()
    {
        static constexpr const char *keys[] = {
            "a",    "Return", "BackSpace", "Delete", "Up",     "Down",   "Left",   "Right",
            "Home", "End",    "Tab",       "ctrl+v", "ctrl+c", "ctrl+x", "ctrl+z", "ctrl+r"};
        place.screen.key(keys[pick(0, static_cast<int>(std::size(keys)) - 1)]);
    }

    void click()
    {
        const point at = {pick(0, width - 1), pick(0, height - 1)};
        // All but the button that ends it.
        constexpr int around = 24;
        if (std::abs(at.x - quit.x) < around && std::abs(at.y - quit.y) < around)
            return;
        place.screen.click(at, pick(0, 7) == 0 ? pick(2, 3) : 1);
    }

    rigged_program &place;
    point quit;
    std::mt19937 random{20250101};
};

void play(const char *program_path, int actions)
{
    rigged_program at(program_path);
    at.driver->show_bottom();
    at.driver->show_preview();
    at.driver->show_statistics();
    monkey player(at);
    for (int i = 0; i < actions; ++i) {
        player.act();
        require(at.vimbo->running(), "the program ended at random action " + std::to_string(i));
    }
    at.screen.settle();
    std::printf("soak: %d random actions\n", actions);
    at.end();
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 3) {
        std::fputs("usage: soak VIMBO DIVISOR\n", stderr);
        return 2;
    }
    constexpr int all_runs = 1000;
    constexpr int all_panel_runs = 10000;
    constexpr int all_actions = 5000;
    constexpr int all_seconds = 60;
    const int divisor = std::max(1, std::atoi(arguments[2]));
    try {
        soak_panels(all_panel_runs / divisor);
        be_silent(arguments[1], all_seconds / divisor);
        soak(arguments[1], all_runs / divisor);
        play(arguments[1], all_actions / divisor);
        return 0;
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "soak: %s\n", fault.what());
        return 1;
    }
}
