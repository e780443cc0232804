// What single functions cost beside the least that anything could cost that does
// the same: each figure and its limit are measured in turn, in one run, and the
// medians are compared.
//
//   functions_bench SCRATCH POINTS
#include "app/window.hpp"
#include "bench/mosaics.hpp"
#include "bench/table.hpp"
#include "mosaic/load_mosaic.hpp"
#include "mosaic/path_vertex.hpp"
#include "platform/files.hpp"
#include "render/preview_picture.hpp"
#include "sources/source_editor.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/x_server.hpp"
#include "toolchain/path_statistics.hpp"
#include "ui/fixed_text.hpp"

#include <benchmark/benchmark.h>
#include <GLFW/glfw3.h>

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

constexpr int repetitions = 5;

struct material {
    vimbo::app_state &app;
    std::string mosaic_file;
    std::uint64_t points;
};

std::unique_ptr<material> all;

void load(benchmark::State &state)
{
    vimbo::mosaic_state &mosaic = all->app.mosaic;
    vimbo::set_text(mosaic.mosaic_path, all->mosaic_file);
    while (state.KeepRunning()) {
        vimbo::load_mosaic(mosaic);
        glFinish();
    }
    if (mosaic.mosaic_vertex_count != static_cast<std::int32_t>(all->points) + 1)
        state.SkipWithError("the mosaic was not loaded");
}

// The most that this process has had in RAM since it was last asked to forget.
std::size_t peak_resident_bytes()
{
    std::ifstream file("/proc/self/status");
    std::string word;
    std::size_t kibibytes = 0;
    while (file >> word && word != "VmHWM:") {
    }
    file >> kibibytes;
    return kibibytes * 1024;
}

// What loading takes of RAM beside the buffer itself, the most at any time; the
// buffer is the driver's, and in RAM where it draws in software.
double memory_beside_the_buffer()
{
    vimbo::mosaic_state &mosaic = all->app.mosaic;
    vimbo::set_text(mosaic.mosaic_path, "");
    vimbo::load_mosaic(mosaic); // so that none is held
    glFinish();
    std::ofstream("/proc/self/clear_refs") << 5; // the peak begins anew
    const std::size_t before = rig::resident_bytes(getpid());
    vimbo::set_text(mosaic.mosaic_path, all->mosaic_file);
    vimbo::load_mosaic(mosaic);
    glFinish();
    const auto growth = static_cast<double>(peak_resident_bytes() - before);
    return growth - static_cast<double>((all->points + 1) * sizeof(vimbo::path_vertex));
}

// The driver's buffer, filled from memory, and one read of the file into memory
// that has been touched.
void buffer_and_read(benchmark::State &state)
{
    const std::size_t size = fs::file_size(all->mosaic_file);
    auto *memory = static_cast<char *>(mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0));
    while (state.KeepRunning()) {
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), memory, GL_STATIC_DRAW);
        glFinish();
        glDeleteBuffers(1, &buffer);
        const int file = open(all->mosaic_file.c_str(), O_RDONLY | O_CLOEXEC);
        std::size_t done = 0;
        for (ssize_t count = 0; (count = read(file, memory + done, size - done)) > 0;)
            done += static_cast<std::size_t>(count);
        close(file);
    }
    munmap(memory, size);
}

std::span<const vimbo::path_vertex> mapped_moves()
{
    const std::size_t size = fs::file_size(all->mosaic_file);
    const int file = open(all->mosaic_file.c_str(), O_RDONLY | O_CLOEXEC);
    auto *bytes = static_cast<char *>(mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0));
    close(file);
    return {reinterpret_cast<const vimbo::path_vertex *>(bytes + 32), all->points};
}

void unmap(std::span<const vimbo::path_vertex> moves)
{
    auto *start = const_cast<char *>(reinterpret_cast<const char *>(moves.data())) - 32;
    munmap(start, moves.size_bytes() + 32);
}

void measure_path(benchmark::State &state)
{
    while (state.KeepRunning()) {
        const auto moves = mapped_moves();
        benchmark::DoNotOptimize(toolchain::measure_path(moves));
        unmap(moves);
    }
}

void sum_lengths(benchmark::State &state)
{
    while (state.KeepRunning()) {
        const auto moves = mapped_moves();
        double sum = 0;
        vimbo::path_vertex from = {0, 0};
        for (const vimbo::path_vertex &to : moves) {
            const double dx = static_cast<double>(to.x) - from.x;
            const double dy = static_cast<double>(to.y) - from.y;
            sum += std::sqrt(dx * dx + dy * dy);
            from = to;
        }
        benchmark::DoNotOptimize(sum);
        unmap(moves);
    }
}

void open_source(benchmark::State &state)
{
    const std::string path = all->mosaic_file + ".source";
    rig::write_file(path, std::string(65536, 'x'));
    while (state.KeepRunning())
        vimbo::load_source(all->app.editor, path.c_str());
}

class medians : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context & /*context*/) override
    {
        return true;
    }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                seconds[run.run_name.function_name] = run.GetAdjustedRealTime() * 1e-3;
    }
    std::map<std::string, double> seconds;
};

void add(const char *name, void (*function)(benchmark::State &))
{
    benchmark::RegisterBenchmark(name, function)
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly()
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 3) {
        std::fputs("usage: functions_bench SCRATCH POINTS\n", stderr);
        return 2;
    }
    const std::string mosaic_file = std::string(arguments[1]) + "/functions.mmv";
    const std::uint64_t points = std::strtoull(arguments[2], nullptr, 10);
    bench::write_big_mosaic(mosaic_file, bench::mosaic_kind::scatter, points);

    const rig::x_server screen;
    setenv("DISPLAY", screen.name().c_str(), 1);
    static vimbo::app_state app;
    if (vimbo::open_window(app) == nullptr)
        return 1;
    vimbo::initialise_source_editor(app.editor);
    all = std::make_unique<material>(material{app, mosaic_file, points});

    add("load", load);
    add("buffer_and_read", buffer_and_read);
    add("measure_path", measure_path);
    add("sum_lengths", sum_lengths);
    add("open_source", open_source);
    // In turn, so that what else the machine does meets both of a pair.
    std::string in_turn = "--benchmark_enable_random_interleaving=true";
    char *options[] = {arguments[0], in_turn.data(), nullptr};
    int option_count = 2;
    benchmark::Initialize(&option_count, options);
    medians reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto &took = reporter.seconds;
    bench::print_row("load_mosaic, beside glBufferData and one read", took.at("load"),
                     took.at("buffer_and_read"), 1.05);
    constexpr double mib = 1024.0 * 1024.0;
    bench::print_row_in("MiB", "its memory beside the buffer, beside 1 MiB",
                        memory_beside_the_buffer() / mib, 1, 1);
    bench::print_row("plimb's figures, beside a sum of all lengths", took.at("measure_path"),
                     took.at("sum_lengths"), 2.5);
    bench::print_row("a source of 65,536 bytes into the editor, beside 10 ms",
                     took.at("open_source"), 0.010, 1.0);
    vimbo::close_window();
    fs::remove(mosaic_file);
    fs::remove(mosaic_file + ".source");
    return 0;
}
