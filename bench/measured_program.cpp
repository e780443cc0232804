#include "bench/measured_program.hpp"
#include "tests/support/program.hpp"

#include "bench/table.hpp"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace bench
{

double now()
{
    using clock_type = std::chrono::steady_clock;
    return std::chrono::duration<double>(clock_type::now().time_since_epoch()).count();
}

void sleep_for(double seconds)
{
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

std::vector<clock_entry> read_clock(const std::string &log)
{
    std::vector<clock_entry> entries;
    std::ifstream file(log);
    for (clock_entry line; file >> line.time >> line.what;)
        entries.push_back(line);
    return entries;
}

std::vector<std::string> vimbo_command(const std::string &sources, const std::string &tray)
{
    const std::string vimbo = std::string(VIMBO_FOLDER) + "/vimbo";
    const std::string size = std::to_string(window_width) + ',' + std::to_string(window_height);
    return {vimbo, "-s", sources, "-t", tray, "-w", size};
}

program::options with_clock(const x_server &screen, const std::vector<std::string> &arguments,
                            const std::string &log)
{
    return {.arguments = arguments,
            .environment = {"DISPLAY=" + screen.name(), "LD_PRELOAD=" SWAP_CLOCK,
                            "SWAP_CLOCK_LOG=" + log},
            .directory = VIMBO_FOLDER,
            .output = {}};
}

measured_program::measured_program(x_server &display, const measured_place &where)
    : log(where.log), screen(display),
      vimbo(with_clock(display, vimbo_command(where.sources, where.tray), where.log)),
      window(wait_for_window(display)),
      driver(display, {window_width, window_height, where.sources, where.tray})
{
    driver.show_bottom();
    driver.show_preview();
    driver.show_statistics();
    const struct nk_rect area = driver.picture();
    centre = {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
    display.move(centre);
    settle(now());
}

measured_program::~measured_program()
{
    screen.close_window(window);
    vimbo.wait_for_end();
}

double measured_program::settle(double since) const
{
    constexpr double longest = 120;
    while (now() < since + longest) {
        sleep_for(0.1);
        const double stood = standing_since(since);
        if (stood > 0)
            return stood;
    }
    throw std::runtime_error("the picture never stood");
}

frame_times measured_program::between(double from, double to) const
{
    return frames_between(log, from, to);
}

void measured_program::await_frame() const
{
    constexpr double just_now = 0.01;
    constexpr double longest = 10;
    const double start = now();
    while (now() < start + longest) {
        sleep_for(0.001);
        const std::vector<clock_entry> entries = read_clock(log);
        if (!entries.empty() && entries.back().what == "swap" &&
            now() - entries.back().time < just_now)
            return;
    }
    throw std::runtime_error("no frame was shown");
}

double measured_program::whole_frame(double since) const
{
    double last_swap = 0;
    bool begun = false;
    for (const auto &[time, what] : read_clock(log)) {
        if (time < since)
            continue;
        if (what == "wait" && last_swap > 0)
            return last_swap;
        if (what == "swap" && begun)
            last_swap = time;
        begun = begun || what == "wait" || what == "poll";
        if (what == "poll")
            last_swap = 0;
    }
    throw std::runtime_error("no frame was whole");
}

double measured_program::frame_after(const std::string &wanted, double since) const
{
    bool seen = false;
    for (const auto &[time, what] : read_clock(log)) {
        if (time < since)
            continue;
        seen = seen || what == wanted;
        if (seen && what == "swap")
            return time;
    }
    return 0;
}

// The program waits only when its picture is whole: the frame before the
// second wait is the first that shows it.
double measured_program::standing_since(double since) const
{
    double last_swap = 0;
    int frames = 0;
    for (const auto &[time, what] : read_clock(log)) {
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

frame_times frames_between(const std::string &log, double from, double to)
{
    frame_times times;
    double last_swap = 0;
    double last_wait = 0;
    for (const auto &[time, what] : read_clock(log)) {
        if (what == "wait" || what == "poll")
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

double processor_time_of(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // Behind the name, which may hold anything: state, ten fields, then the two.
    std::istringstream fields(line.substr(line.rfind(')') + 1));
    std::string skipped;
    for (int i = 0; i < 11; ++i)
        fields >> skipped;
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

frame_times at_rest(const measured_program &vimbo, double seconds)
{
    const double start = now();
    sleep_for(seconds);
    return vimbo.between(start, now());
}

double while_panning(x_server &screen, const measured_program &vimbo)
{
    constexpr int steps = 60;
    constexpr double between_steps = 1.0 / 30;
    const point from = vimbo.middle();
    screen.press();
    sleep_for(0.2);
    const double start = now();
    for (int i = 1; i <= steps; ++i) {
        screen.move({from.x + i, from.y});
        sleep_for(between_steps);
    }
    const double end = now();
    screen.release();
    const double result = median(vimbo.between(start, end).intervals);
    screen.click(from, 2); // the view as it was
    vimbo.settle(now());
    return result;
}

double while_replaying(x_server &screen, const measured_program &vimbo)
{
    const double start = now();
    screen.click(vimbo.middle(), 3);
    sleep_for(4);
    const double result = median(vimbo.between(start + 0.5, now()).intervals);
    vimbo.settle(now());
    return result;
}

double whole_replay(x_server &screen, const measured_program &vimbo)
{
    constexpr std::size_t steps = 255;
    const double start = now();
    screen.click(vimbo.middle(), 3);
    for (int i = 0; i < 600; ++i) {
        sleep_for(0.1);
        const std::vector<double> intervals = vimbo.between(start, now()).intervals;
        if (intervals.size() > steps)
            return std::accumulate(intervals.begin() + 1, intervals.begin() + 1 + steps, 0.0);
    }
    throw std::runtime_error("the replay never ended");
}

namespace
{

// The dearest frame that each of some inputs brings about, of all the median.
template <typename Input>
double work_of(const std::string &log, int count, Input input)
{
    constexpr double at_least = 0.1;
    constexpr int attempts = 20;
    std::vector<double> work;
    for (int i = 0; i < count; ++i) {
        const double start = now();
        input(i);
        std::vector<double> frames;
        for (int attempt = 0; attempt < attempts && frames.size() < 2; ++attempt) {
            sleep_for(at_least);
            frames = frames_between(log, start, now()).work;
        }
        if (frames.empty())
            throw std::runtime_error("an input brought no frame about");
        work.push_back(*std::max_element(frames.begin(), frames.end()));
    }
    return median(work);
}

} // namespace

double hover_work(x_server &screen, rig::ui_driver &driver, const std::string &log)
{
    const point buttons[] = {driver.place_of("Evaluate"), driver.place_of("Integrate")};
    return work_of(log, 40, [&](int i) { screen.move(buttons[i % 2]); });
}

double typing_work(x_server &screen, rig::ui_driver &driver, const std::string &log)
{
    screen.click(driver.editor());
    return work_of(log, 40, [&](int i) { screen.type(i % 10 == 9 ? U"\n" : U"a"); });
}

} // namespace bench
