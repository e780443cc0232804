// How cost grows with the mosaic: loads and shows spirals of 10 thousand points to
// 100 million, prints a table and draws a plot of it.
//
//   growth_bench SCRATCH PLOT.svg
#include "app/window.hpp"
#include "bench/growth_plot.hpp"
#include "bench/measured_program.hpp"
#include "bench/mosaics.hpp"
#include "bench/table.hpp"
#include "mosaic/load_mosaic.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/program.hpp"
#include "ui/fixed_text.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace bench;
using namespace rig;
namespace fs = std::filesystem;

constexpr int repetitions = 5;

double load_time(vimbo::app_state &app, const std::string &mosaic)
{
    vimbo::set_text(app.mosaic.mosaic_path, mosaic);
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        const double start = now();
        vimbo::load_mosaic(app.mosaic);
        glFinish();
        times.push_back(now() - start);
    }
    return median(times);
}

// What the program, with all panels open, takes of the machine's memory.
double resident_mib(const measured_program &vimbo)
{
    constexpr double mib = 1024.0 * 1024.0;
    return static_cast<double>(resident_bytes(vimbo.id())) / mib;
}

growth_row measure(x_server &screen, vimbo::app_state &app, const std::string &scratch,
                   std::uint64_t points)
{
    const std::string tray = scratch + "/growth";
    const std::string mosaic = tray + "/_mosaics/0.mmv";
    write_big_mosaic(mosaic, mosaic_kind::spiral, points);
    growth_row row = {};
    row.points = static_cast<double>(points);
    row.load = load_time(app, mosaic);
    vimbo::set_text(app.mosaic.mosaic_path, "");
    vimbo::load_mosaic(app.mosaic);

    measured_program vimbo(screen, {tray, tray, scratch + "/clock"});
    row.rest = median(at_rest(vimbo, 3).work);
    row.pan = while_panning(screen, vimbo);
    row.replay = while_replaying(screen, vimbo);
    row.memory = resident_mib(vimbo);
    fs::remove_all(tray);
    return row;
}

void print(const growth_row &row)
{
    constexpr double milliseconds = 1e3;
    std::printf("| %.0f | %.2f ms | %.2f ms | %.2f ms | %.2f ms | %.0f MiB |\n", row.points,
                row.load * milliseconds, row.rest * milliseconds, row.pan * milliseconds,
                row.replay * milliseconds, row.memory);
    std::fflush(stdout);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 3) {
        std::fputs("usage: growth_bench SCRATCH PLOT.svg\n", stderr);
        return 2;
    }
    try {
        x_server screen(1920, 1300);
        const x_server beside; // its window is not to be taken for the program's
        setenv("DISPLAY", beside.name().c_str(), 1);
        static vimbo::app_state app;
        if (vimbo::open_window(app) == nullptr)
            throw std::runtime_error("no window");
        std::puts("| points | load | work of a frame at rest | frame to frame, panning "
                  "| replaying | memory |\n|---|---|---|---|---|---|");
        std::vector<growth_row> rows;
        for (std::uint64_t points = 10000; points <= 100000000; points *= 10) {
            rows.push_back(measure(screen, app, arguments[1], points));
            print(rows.back());
        }
        plot_growth(arguments[2], rows);
        vimbo::close_window();
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "growth_bench: %s\n", fault.what());
        return 1;
    }
    return 0;
}
