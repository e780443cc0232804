// Frame times of the real program on a display of its own, with a mosaic of many
// points and with none. A clock preloaded into it notes when it shows frames.
//
//   frames_bench SCRATCH POINTS hatch|spiral|scatter
#include "app/window.hpp"
#include "bench/mosaics.hpp"
#include "bench/table.hpp"
#include "mosaic/load_mosaic.hpp"
#include "render/preview_picture.hpp"
#include "tests/support/operator.hpp"
#include "tests/support/scratch.hpp"
#include "ui/fixed_text.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace bench;
using clock_type = std::chrono::steady_clock;

constexpr int width = 1600;
constexpr int height = 1240;
constexpr int repetitions = 5;

double now()
{
    return std::chrono::duration<double>(clock_type::now().time_since_epoch()).count();
}

void sleep(double seconds)
{
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

struct frame_times {
    std::vector<double> intervals; // from one shown frame to the next
    std::vector<double> work;      // from the end of the wait to the shown frame
};

/// The running program and what its clock says.
class measured_program
{
public:
    measured_program(x_server &display, const std::string &tray, const std::string &log_file)
        : log(log_file), screen(display),
          vimbo({.arguments = {VIMBO_PROGRAM, "-s", tray, "-t", tray, "-w",
                               std::to_string(width) + ',' + std::to_string(height)},
                 .environment = {"DISPLAY=" + display.name(), "LD_PRELOAD=" SWAP_CLOCK,
                                 "SWAP_CLOCK_LOG=" + log_file},
                 .directory = {},
                 .output = {}}),
          window(wait_for_window(display)), hand(display, {width, height, tray, tray})
    {
        hand.show_bottom();
        hand.show_preview();
        hand.show_statistics();
        const struct nk_rect area = hand.picture();
        centre = {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
        display.move(centre);
        settle(now());
    }

    ~measured_program()
    {
        screen.close_window(window);
        vimbo.wait_for_end();
    }

    /// Waits until the program has nothing left to draw after `since`; the time
    /// of the frame with which that was so.
    double settle(double since)
    {
        constexpr double longest = 120;
        while (now() < since + longest) {
            sleep(0.1);
            const double stood = standing_since(since);
            if (stood > 0)
                return stood;
        }
        throw std::runtime_error("the picture never stood");
    }

    frame_times between(double from, double to)
    {
        frame_times times;
        double last_swap = 0;
        double last_wait = 0;
        for (const auto &[time, what] : read_log()) {
            if (what == "wait")
                last_wait = time;
            if (what != "swap")
                continue;
            if (last_swap > from && time < to) {
                times.intervals.push_back(time - last_swap);
                if (last_wait > last_swap)
                    times.work.push_back(time - last_wait);
            }
            last_swap = time;
        }
        return times;
    }

    point middle() const
    {
        return centre;
    }
    desk_operator &operator_hand()
    {
        return hand;
    }

private:
    struct entry {
        double time;
        std::string what;
    };

    std::vector<entry> read_log() const
    {
        std::vector<entry> entries;
        std::ifstream file(log);
        for (entry line; file >> line.time >> line.what;)
            entries.push_back(line);
        return entries;
    }

    // The program waits only when its picture is whole: the frame before the
    // second wait is the first that shows it.
    double standing_since(double since) const
    {
        double last_swap = 0;
        int frames = 0;
        for (const auto &[time, what] : read_log()) {
            if (time < since)
                continue;
            if (what == "wait" && frames > 1)
                return last_swap;
            if (what == "swap") {
                last_swap = time;
                ++frames;
            }
        }
        return 0;
    }

    std::string log;
    x_server &screen;
    program vimbo;
    unsigned long window;
    desk_operator hand;
    point centre = {};
};

struct figures {
    double rest_work, rest_interval, hover_work, replay_interval;
    double longest, until_true;
};

double largest(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

figures measure(x_server &screen, const std::string &tray, const std::string &log)
{
    figures result = {};
    measured_program vimbo(screen, tray, log);
    double start = now();
    sleep(3);
    const frame_times rest = vimbo.between(start, now());
    result.rest_work = median(rest.work);
    result.rest_interval = median(rest.intervals);

    std::vector<double> longest;
    std::vector<double> until;
    for (int i = 0; i < repetitions; ++i) {
        // Each drag to a view that was not there before.
        screen.press();
        sleep(0.2);
        start = now();
        screen.move({vimbo.middle().x + 7 * (i + 1), vimbo.middle().y + 3 * i});
        const double stood = vimbo.settle(start);
        screen.release();
        longest.push_back(largest(vimbo.between(start - 0.05, stood + 0.01).intervals));
        until.push_back(stood - start);
        sleep(0.3);
    }
    result.longest = median(longest);
    result.until_true = median(until);

    start = now();
    screen.click(vimbo.middle(), 3);
    sleep(4);
    result.replay_interval = median(vimbo.between(start + 0.5, now()).intervals);
    vimbo.settle(now());

    const point over = vimbo.operator_hand().editor();
    start = now();
    for (int i = 0; i < 60; ++i) {
        screen.move({over.x + i, over.y});
        sleep(0.05);
    }
    result.hover_work = median(vimbo.between(start, now()).work);
    return result;
}

// One draw of all points into the window, as the program would without keeping
// anything.
double direct_draw(const std::string &tray, const struct nk_rect &rectangle)
{
    static vimbo::app_state app;
    app.frame.window_width = width;
    app.frame.window_height = height;
    if (vimbo::open_window(app) == nullptr)
        throw std::runtime_error("no window");
    vimbo::set_text(app.mosaic.tray_directory, tray);
    vimbo::format_mosaic_path(app.mosaic);
    vimbo::load_mosaic(app.mosaic);
    app.preview.rectangle = rectangle;
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        app.preview.pan_x = 0.01F * static_cast<float>(i);
        const double start = now();
        vimbo::draw_preview_directly(app.frame, app.preview,
                                     {app.path_program, app.mosaic, app.tray_outline});
        glFinish();
        times.push_back(now() - start);
    }
    vimbo::close_window();
    return median(times);
}

mosaic_kind kind_of(const std::string &name)
{
    if (name == "hatch")
        return mosaic_kind::hatch;
    return name == "spiral" ? mosaic_kind::spiral : mosaic_kind::scatter;
}

void print(const figures &full, const figures &empty, double direct)
{
    print_row("frame at rest, beside one without a mosaic", full.rest_work, empty.rest_work, 1.2);
    print_row("frame with the mouse over the editor, beside the same", full.hover_work,
              empty.hover_work, 1.2);
    print_row("replay step, beside 1/255 of a direct draw and one of none", full.replay_interval,
              direct / 255 + empty.replay_interval, 1.5);
    print_row("drag step: longest frame to frame, beside a resting one", full.longest,
              empty.rest_interval, 2.0);
    print_row("drag step: until the true picture, beside a direct draw", full.until_true, direct,
              1.3);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 4) {
        std::fputs("usage: frames_bench SCRATCH POINTS hatch|spiral|scatter\n", stderr);
        return 2;
    }
    const std::string scratch = arguments[1];
    const std::string tray = scratch + "/frames";
    const std::string nothing = scratch + "/nothing";
    std::filesystem::create_directories(nothing);
    write_big_mosaic(tray + "/_mosaics/0.mmv", kind_of(arguments[3]),
                     std::strtoull(arguments[2], nullptr, 10));
    try {
        x_server screen(1920, 1300);
        const figures empty = measure(screen, nothing, scratch + "/clock");
        const figures full = measure(screen, tray, scratch + "/clock");
        setenv("DISPLAY", screen.name().c_str(), 1);
        print(full, empty, direct_draw(tray, {.x = 824, .y = 620, .w = 757, .h = 500}));
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "frames_bench: %s\n", fault.what());
        return 1;
    }
    std::filesystem::remove_all(tray);
    return 0;
}
