// How long the true picture of a mosaic of many points takes.
//
//   pictures_bench SCRATCH POINTS hatch|short-hatch|spiral|scatter notches|loads
//
// notches: of the real program, from a wheel notch to the true picture, beside one
// direct draw of that view. loads: of a load with its first picture, and of the boxes
// of the path's chunks.
#include "app/window.hpp"
#include "bench/measured_program.hpp"
#include "bench/mosaics.hpp"
#include "bench/table.hpp"
#include "mosaic/load_mosaic.hpp"
#include "render/preview_picture.hpp"
#include "ui/fixed_text.hpp"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace bench;

constexpr int repetitions = 5;
constexpr int zooms[] = {1, 4, 256};

struct targets {
    double at_zoom[std::size(zooms)];
};

targets targets_of(mosaic_kind kind)
{
    if (kind == mosaic_kind::short_hatch)
        return {{0.8, 0.7, 0.1}};
    if (kind == mosaic_kind::spiral)
        return {{1.1, 1.1, 1.1}};
    return {{0.15, 0.2, 0.5}};
}

struct notch_times {
    double until_true;
    double longest; // frame to frame, on the way
};

// A notch into a view that was not there before: the picture is dragged, and the one
// before the notch is of half the zoom.
notch_times measure_notch(x_server &screen, const measured_program &vimbo, int repetition)
{
    screen.press();
    screen.move({vimbo.middle().x + 5 * (repetition + 1), vimbo.middle().y + 2 * repetition});
    screen.release();
    screen.move(vimbo.middle());
    vimbo.settle(now());
    screen.scroll(-2);
    vimbo.settle(now());
    screen.scroll(1);
    vimbo.settle(now());
    vimbo.await_frame();
    const double start = now();
    screen.scroll(1);
    vimbo.settle(start);
    const double whole = vimbo.whole_frame(start);
    const std::vector<double> intervals = vimbo.between(start, whole + 1e-4).intervals;
    return {whole - start,
            intervals.empty() ? 0 : *std::max_element(intervals.begin(), intervals.end())};
}

struct notch_figures {
    double until_true[std::size(zooms)];
    double longest[std::size(zooms)];
    double rest_interval;
};

notch_figures measure_notches(x_server &screen, const std::string &tray, const std::string &log)
{
    notch_figures figures = {};
    const measured_program vimbo(screen, {tray, tray, log});
    figures.rest_interval = median(at_rest(vimbo, 2).intervals);
    for (std::size_t i = 0; i < std::size(zooms); ++i) {
        screen.click(vimbo.middle(), 2); // the view as it was
        screen.scroll(static_cast<int>(std::lround(std::log2(zooms[i]))));
        vimbo.settle(now());
        std::vector<double> until_true;
        std::vector<double> longest;
        for (int repetition = 0; repetition < repetitions; ++repetition) {
            const notch_times times = measure_notch(screen, vimbo, repetition);
            until_true.push_back(times.until_true);
            longest.push_back(times.longest);
        }
        figures.until_true[i] = median(until_true);
        figures.longest[i] = median(longest);
    }
    return figures;
}

vimbo::app_state &opened_app(const std::string &tray)
{
    static vimbo::app_state app;
    app.frame.window_width = window_width;
    app.frame.window_height = window_height;
    if (vimbo::open_window(app) == nullptr)
        throw std::runtime_error("no window");
    vimbo::set_text(app.mosaic.tray_directory, tray);
    vimbo::format_mosaic_path(app.mosaic);
    app.preview.rectangle = {.x = 824, .y = 620, .w = 757, .h = 500};
    return app;
}

vimbo::picture_parts parts_of(const vimbo::app_state &app)
{
    return {app.path_program, app.mosaic, app.tray_outline};
}

double direct_draw(vimbo::app_state &app, int zoom)
{
    std::vector<double> times;
    app.preview.zoom = static_cast<float>(zoom);
    for (int i = 0; i < repetitions; ++i) {
        app.preview.pan_x = 0.01F * static_cast<float>(i);
        const double start = now();
        vimbo::draw_preview_directly(app.frame, app.preview, parts_of(app));
        glFinish();
        times.push_back(now() - start);
    }
    return median(times);
}

void compare_notches(const std::string &tray, const std::string &log, mosaic_kind kind)
{
    x_server screen(1920, 1300);
    const notch_figures figures = measure_notches(screen, tray, log);
    setenv("DISPLAY", screen.name().c_str(), 1);
    vimbo::app_state &app = opened_app(tray);
    vimbo::load_mosaic(app.mosaic);
    for (std::size_t i = 0; i < std::size(zooms); ++i) {
        const std::string zoom = "notch to zoom " + std::to_string(zooms[i]);
        print_row((zoom + ", beside a direct draw").c_str(), figures.until_true[i],
                  direct_draw(app, zooms[i]), targets_of(kind).at_zoom[i]);
        print_row((zoom + ": longest frame, beside one at rest").c_str(), figures.longest[i],
                  figures.rest_interval, 2);
    }
    vimbo::close_window();
}

// Frames and slices as the program has them, until the picture stands. Gives the
// longest time between two frames.
double draw_to_the_end(vimbo::app_state &app)
{
    constexpr double slices_time = 1.0 / 25;
    double longest = 0;
    double last = now();
    const auto show = [&] {
        vimbo::draw_preview(app.frame, app.preview, parts_of(app), app.picture);
        glFinish();
        longest = std::max(longest, now() - last);
        last = now();
    };
    show();
    while (vimbo::is_unfinished(app.picture)) {
        const double start = now();
        do
            vimbo::draw_slice(app.picture, parts_of(app));
        while (vimbo::is_unfinished(app.picture) && now() - start < slices_time);
        show();
    }
    return longest;
}

double box_time(vimbo::app_state &app)
{
    vimbo::path_chunks &chunks = app.picture.chunks;
    chunks.mosaic_generation = 0;
    const double start = now();
    vimbo::fit_chunks(chunks, app.mosaic);
    while (!vimbo::are_boxed(chunks, app.mosaic))
        vimbo::box_stretch(chunks, app.mosaic);
    return now() - start;
}

// The least that reading the buffer takes: its words added up where they lie.
double read_time(const vimbo::app_state &app)
{
    const auto bytes = static_cast<GLsizeiptr>(app.mosaic.mosaic_vertex_count) * 8;
    const double start = now();
    glBindBuffer(GL_COPY_READ_BUFFER, app.mosaic.mosaic_vbo);
    const auto *words = static_cast<const std::uint64_t *>(
        glMapBufferRange(GL_COPY_READ_BUFFER, 0, bytes, GL_MAP_READ_BIT));
    std::uint64_t sum = 0;
    for (const std::uint64_t word : std::span(words, static_cast<std::size_t>(bytes) / 8))
        sum += word;
    glUnmapBuffer(GL_COPY_READ_BUFFER);
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
    const double time = now() - start;
    if (sum == 0)
        throw std::runtime_error("the buffer is empty");
    return time;
}

void compare_loads(const std::string &tray)
{
    const x_server screen(1920, 1300);
    setenv("DISPLAY", screen.name().c_str(), 1);
    vimbo::app_state &app = opened_app(tray);
    std::vector<double> load;
    std::vector<double> until_true;
    std::vector<double> longest;
    std::vector<double> boxes;
    std::vector<double> read;
    for (int i = 0; i < repetitions; ++i) {
        const double start = now();
        vimbo::load_mosaic(app.mosaic);
        glFinish();
        load.push_back(now() - start);
        longest.push_back(draw_to_the_end(app));
        until_true.push_back(now() - start);
        boxes.push_back(box_time(app));
        read.push_back(read_time(app));
    }
    print_row("until the true picture after a load, beside load_mosaic", median(until_true),
              median(load), 3);
    print_row("longest frame to frame until then, beside 1/30 s", median(longest), 1.0 / 30, 2);
    print_row("boxes of the chunks, beside a read of the buffer", median(boxes), median(read), 1.5);
    vimbo::close_window();
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 5) {
        std::fputs("usage: pictures_bench SCRATCH POINTS hatch|short-hatch|spiral|scatter "
                   "notches|loads\n",
                   stderr);
        return 2;
    }
    const std::string scratch = arguments[1];
    const std::string tray = scratch + "/pictures";
    const mosaic_kind kind = kind_named(arguments[3]);
    try {
        write_big_mosaic(tray + "/_mosaics/0.mmv", kind, std::strtoull(arguments[2], nullptr, 10));
        if (std::string_view(arguments[4]) == "loads")
            compare_loads(tray);
        else
            compare_notches(tray, scratch + "/clock", kind);
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "pictures_bench: %s\n", fault.what());
        return 1;
    }
    std::filesystem::remove_all(tray);
    return 0;
}
