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

figures measure(x_server &screen, const std::string &tray, const std::string &log)
{
    figures result = {};
    measured_program vimbo(screen, {tray, tray, log});
    const frame_times rest = at_rest(vimbo, 3);
    result.rest_work = median(rest.work);
    result.rest_interval = median(rest.intervals);
    result.hover_work = bench::hover_work(screen, vimbo.ui(), log);
    result.typing_work = bench::typing_work(screen, vimbo.ui(), log);
    screen.move(vimbo.middle());
    vimbo.settle(now());
    measure_drags(screen, vimbo, result);
    result.replay = whole_replay(screen, vimbo);
    return result;
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
