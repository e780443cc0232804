// What the whole program costs where no mosaic counts: its start, an idle second,
// a tool's end, an open list of many files; and the companion `mero`.
//
//   program_bench SCRATCH
#include "bench/measured_program.hpp"
#include "bench/table.hpp"
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/wait.hpp"

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <lua.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace bench;
using namespace rig;
namespace fs = std::filesystem;

constexpr int repetitions = 11;

// From the start of a program to its first shown frame.
double start_time(x_server &screen, const std::vector<std::string> &arguments,
                  const std::string &log)
{
    fs::remove(log);
    const double start = now();
    program run(with_clock(screen, arguments, log));
    double shown = 0;
    wait_until([&] {
        for (const clock_entry &entry : read_clock(log))
            if (entry.what == "swap" && shown == 0)
                shown = entry.time;
        return shown != 0;
    });
    wait_until([&] { return screen.find_window("Orvanne Material Editor") != 0; });
    screen.close_window(screen.find_window("Orvanne Material Editor"));
    run.wait_for_end();
    if (shown == 0)
        throw std::runtime_error(arguments.front() + " showed no frame");
    return shown - start;
}

void measure_start(const std::string &scratch)
{
    x_server screen(1920, 1300);
    const std::string log = scratch + "/clock";
    std::vector<double> vimbo;
    std::vector<double> panel;
    std::vector<double> clear;
    for (int i = 0; i < repetitions; ++i) {
        vimbo.push_back(start_time(screen, vimbo_command(scratch, scratch), log));
        panel.push_back(start_time(screen, {YARDSTICK, "panel"}, log));
        clear.push_back(start_time(screen, {YARDSTICK, "clear"}, log));
    }
    print_row("start to first frame, beside a bare Nuklear program", median(vimbo), median(panel),
              1.2);
    std::printf("  (that program takes %.2f times as long as a window with one clear, %.2f ms)\n",
                median(panel) / median(clear), median(clear) * 1e3);
}

// Processor time in a second, all threads.
double idle_second(pid_t process)
{
    constexpr double seconds = 5;
    sleep_for(1);
    const double before = processor_time_of(process);
    sleep_for(seconds);
    return (processor_time_of(process) - before) / seconds;
}

void measure_idle_second(const std::string &scratch)
{
    x_server screen(1920, 1300);
    const std::string log = scratch + "/clock";
    std::vector<double> vimbo;
    std::vector<double> alone;
    for (int i = 0; i < 5; ++i) {
        {
            const measured_program run(screen, {scratch, scratch, log});
            vimbo.push_back(idle_second(run.id()));
        }
        program run(with_clock(screen, {YARDSTICK, "panels"}, log));
        const unsigned long window = wait_for_window(screen);
        alone.push_back(idle_second(run.id()));
        screen.close_window(window);
        run.wait_for_end();
    }
    print_row("idle second's processor time, beside Nuklear alone", median(vimbo), median(alone),
              1.1);
}

// Frames in which something of the panels changes, beside all panels drawn anew.
void measure_changes(const std::string &scratch)
{
    const tool_path tools;
    write_script(tools.file("plimb"), "exec sleep 60\n");
    x_server screen(1920, 1300);
    const std::string log = scratch + "/clock";
    double hover = 0;
    double typing = 0;
    double spinner = 0;
    {
        measured_program vimbo(screen, {scratch, scratch, log});
        hover = hover_work(screen, vimbo.ui(), log);
        typing = typing_work(screen, vimbo.ui(), log);
        vimbo.ui().press("↻");
        spinner = median(at_rest(vimbo, 3).work);
    }
    program run(with_clock(screen, {YARDSTICK, "panels"}, log));
    const unsigned long window = wait_for_window(screen);
    ui_driver driver(screen, {window_width, window_height, scratch, scratch});
    driver.panels().app().frame.ui_flags =
        vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown | vimbo::ui_flag::stats_shown;
    driver.panels().frame();
    const double whole_hover = hover_work(screen, driver, log);
    const double whole_typing = typing_work(screen, driver, log);
    const double start = now();
    sleep_for(3);
    const double whole = median(frames_between(log, start, now()).work);
    screen.close_window(window);
    run.wait_for_end();
    print_row("frame of a hovered button, beside all panels drawn", hover, whole_hover, 0.3);
    print_row("frame of a typed character, beside the same", typing, whole_typing, 0.3);
    print_row("frame of a spinner, beside the same", spinner, whole, 0.3);
}

void measure_tools_end(const std::string &scratch)
{
    const tool_path tools;
    const std::string fifo = tools.file("fifo");
    if (mkfifo(fifo.c_str(), 0600) != 0)
        throw std::runtime_error("no FIFO");
    write_script(tools.file("mero"), "read line <" + fifo + '\n');
    x_server screen(1920, 1300);
    measured_program vimbo(screen, {scratch, scratch, scratch + "/clock"});
    const double frame = median(at_rest(vimbo, 2).intervals);
    std::vector<double> until_shown;
    for (int i = 0; i < repetitions; ++i) {
        vimbo.ui().press("Evaluate");
        const int gate = open(fifo.c_str(), O_WRONLY | O_CLOEXEC);
        sleep_for(0.2 + 0.003 * i); // not always at the same place of a frame
        const double end = now();
        (void)!write(gate, "\n", 1);
        close(gate);
        sleep_for(0.5);
        until_shown.push_back(vimbo.frame_after("join", end) - end);
    }
    print_row("a tool's exit to its status, beside two empty frames", median(until_shown),
              2 * frame, 1);
}

int visit_nothing(const char * /*path*/, const struct stat * /*status*/, int /*type*/)
{
    return 0;
}

double bare_walk(const std::string &directory)
{
    constexpr int open_directories = 256;
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        const double start = now();
        ftw(directory.c_str(), visit_nothing, open_directories);
        times.push_back(now() - start);
    }
    return median(times);
}

void measure_picker(const std::string &scratch)
{
    const std::string sources = scratch + "/sources";
    for (int folder = 0; folder < 2000; ++folder)
        for (int file = 0; file < 10; ++file)
            write_file(
                sources + "/folder" + std::to_string(folder) + "/file" + std::to_string(file), "");
    x_server screen(1920, 1300);
    measured_program vimbo(screen, {scratch, sources, scratch + "/clock"});
    vimbo.ui().press("--");
    sleep_for(1);
    const double frame = median(at_rest(vimbo, 5).work);
    print_row("frame with 20,000 files in an open list, beside ftw", frame, bare_walk(sources),
              1.5);
    fs::remove_all(sources);
}

int do_nothing(lua_State * /*lua*/)
{
    return 0;
}

double empty_loop(const std::string &source)
{
    lua_State *lua = luaL_newstate();
    luaL_openlibs(lua);
    lua_register(lua, "mark", do_nothing);
    const double start = now();
    if (luaL_dostring(lua, source.c_str()) != LUA_OK)
        throw std::runtime_error(lua_tostring(lua, -1));
    const double time = now() - start;
    lua_close(lua);
    return time;
}

double run_mero(const std::string &options)
{
    const double start = now();
    if (std::system((MERO " " + options + " >/dev/null").c_str()) != 0)
        throw std::runtime_error("mero failed");
    return now() - start;
}

void measure_mero(const std::string &scratch)
{
    const std::string source = "for i = 1, 10000000 do mark(i % 1000, i % 777) end\n";
    const std::string file = scratch + "/marks.lua";
    const std::string mosaic = scratch + "/marks.mmv";
    write_file(file, source);
    std::vector<double> empty;
    std::vector<double> evaluated;
    std::vector<double> integrated;
    const std::string integration = "-s 35 " + file + ' ' + mosaic;
    for (int i = 0; i < repetitions; ++i) {
        empty.push_back(empty_loop(source));
        evaluated.push_back(run_mero("-S " + file));
        integrated.push_back(run_mero(integration));
        fs::remove(mosaic); // to take its place would cost the freeing of the old one
    }
    print_row("mero -S, 10 M marks, beside the loop with an empty mark", median(evaluated),
              median(empty), 1.5);
    print_row("mero -s, 10 M marks into a mosaic, beside the same", median(integrated),
              median(empty), 1.5);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 2) {
        std::fputs("usage: program_bench SCRATCH\n", stderr);
        return 2;
    }
    const std::string scratch = std::string(arguments[1]) + "/program";
    fs::create_directories(scratch);
    try {
        measure_start(scratch);
        measure_idle_second(scratch);
        measure_changes(scratch);
        measure_tools_end(scratch);
        measure_picker(scratch);
        measure_mero(scratch);
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "program_bench: %s\n", fault.what());
        return 1;
    }
    fs::remove_all(scratch);
    return 0;
}
