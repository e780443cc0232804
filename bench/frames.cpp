// Frame times of the real program with a mosaic of many points, and with none.
//
//   frames_bench SCRATCH POINTS hatch|spiral|scatter
#include "app/window.hpp"
#include "bench/measured_program.hpp"
#include "bench/mosaics.hpp"
#include "bench/table.hpp"
#include "mosaic/load_mosaic.hpp"
#include "render/preview_picture.hpp"
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "ui/fixed_text.hpp"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace bench;
constexpr int repetitions = 5;

struct figures {
    double rest_work, rest_interval, replay;
    double hover_work, typing_work;
    double longest, until_true;
};

double largest(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// Drags the picture to views that were not there before, one after the other.
void measure_drags(x_server &screen, const measured_program &vimbo, figures &result)
{
    std::vector<double> longest;
    std::vector<double> until;
    for (int i = 0; i < repetitions; ++i) {
        screen.press();
        sleep_for(0.2);
        const double start = now();
        screen.move({vimbo.middle().x + 7 * (i + 1), vimbo.middle().y + 3 * i});
        const double stood = vimbo.settle(start);
        screen.release();
        longest.push_back(largest(vimbo.between(start - 0.05, stood + 0.01).intervals));
        until.push_back(stood - start);
        sleep_for(0.3);
    }
    result.longest = median(longest);
    result.until_true = median(until);
}

void measure_moves(x_server &screen, const std::string &tray, const std::string &log,
                   figures &result)
{
    const measured_program vimbo(screen, {tray, tray, log});
    measure_drags(screen, vimbo, result);
    result.replay = whole_replay(screen, vimbo);
}

// What a few milliseconds decide, one value of each round.
struct rounds {
    std::vector<double> rest_work, rest_interval, hover_work, typing_work;
};

void measure_round(x_server &screen, const std::string &tray, const std::string &log,
                   rounds &results)
{
    measured_program vimbo(screen, {tray, tray, log});
    const frame_times rest = at_rest(vimbo, 2);
    results.rest_work.push_back(median(rest.work));
    results.rest_interval.push_back(median(rest.intervals));
    results.hover_work.push_back(bench::hover_work(screen, vimbo.ui(), log));
    results.typing_work.push_back(bench::typing_work(screen, vimbo.ui(), log));
}

void take_medians(const rounds &results, figures &figures)
{
    figures.rest_work = median(results.rest_work);
    figures.rest_interval = median(results.rest_interval);
    figures.hover_work = median(results.hover_work);
    figures.typing_work = median(results.typing_work);
}

// With a mosaic and without one in turn, so that what else the machine does meets both.
void measure_in_turn(x_server &screen, const std::string &tray, const std::string &nothing,
                     const std::string &log, figures &full, figures &empty)
{
    rounds with_mosaic;
    rounds without;
    for (int i = 0; i < repetitions; ++i) {
        measure_round(screen, nothing, log, without);
        measure_round(screen, tray, log, with_mosaic);
    }
    take_medians(without, empty);
    take_medians(with_mosaic, full);
    measure_moves(screen, nothing, log, empty);
    measure_moves(screen, tray, log, full);
}

// One draw of all points into the window, as the program would without keeping
// anything.
double direct_draw(const std::string &tray, const struct nk_rect &rectangle)
{
    static vimbo::app_state app;
    app.frame.window_width = window_width;
    app.frame.window_height = window_height;
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

void print(const figures &full, const figures &empty, double direct)
{
    print_row("frame at rest, beside one without a mosaic", full.rest_work, empty.rest_work, 1.2);
    print_row("frame with the mouse over buttons, beside the same", full.hover_work,
              empty.hover_work, 1.2);
    print_row("frame while text is typed, beside the same", full.typing_work, empty.typing_work,
              1.2);
    print_row("replay step, beside 1/255 of a direct draw and one of none", full.replay / 255,
              (direct + empty.replay) / 255, 1.5);
    print_row("a whole replay, beside 255 thirtieths of a second", full.replay, 255 / 30.0, 1.15);
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
    write_big_mosaic(tray + "/_mosaics/0.mmv", kind_named(arguments[3]),
                     std::strtoull(arguments[2], nullptr, 10));
    try {
        x_server screen(1920, 1300);
        figures full = {};
        figures empty = {};
        measure_in_turn(screen, tray, nothing, scratch + "/clock", full, empty);
        setenv("DISPLAY", screen.name().c_str(), 1);
        print(full, empty, direct_draw(tray, {.x = 824, .y = 620, .w = 757, .h = 500}));
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "frames_bench: %s\n", fault.what());
        return 1;
    }
    std::filesystem::remove_all(tray);
    return 0;
}
