#include "stats/stats_run.hpp"

#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"

#include <algorithm>
#include <cstdio>

namespace vimbo
{

void start_statistics(frame_state &frame, stats_run_state &run, const mosaic_state &mosaic)
{
    if (!can_be_quoted(mosaic.tray_directory))
        return;
    std::ranges::fill(run.stats_locality, 0.0F);
    std::ranges::fill(run.stats_directions, 0.0F);
    char path[mosaic_path_capacity];
    format_mosaic_path(mosaic, path);
    // The quote stays open: it runs to the end of the line, whatever is in the path.
    format_text(frame.scratch_text, "plimb \"%s", path);
    command_job &job = run.stats_job;
    job.pipe = open_command(frame.scratch_text);
    if (start_job_reader(job, stats_reader, frame.ui_flags, ui_flag::stats_running))
        return;
    // Other than the evaluator's, this job is idle again at once: the tool only reads,
    // so that one which nobody follows is in nobody's way.
    if (job.pipe != nullptr)
        release_command(job.pipe);
    job.pipe = nullptr;
}

void poll_statistics(frame_state &frame, stats_run_state &run)
{
    void *result = nullptr;
    if (!poll_job(run.stats_job, result))
        return;
    frame.ui_flags &= ~ui_flag::stats_running;
    const auto *values = static_cast<const float *>(result);
    std::copy_n(values, locality_count, run.stats_locality);
    std::copy_n(values + locality_count, direction_count, run.stats_directions);
    std::copy_n(values + locality_count + direction_count, move_count, run.stats_moves);
    // The tool may live on; it is not waited for.
    if (run.stats_job.pipe != nullptr)
        release_command(run.stats_job.pipe);
    run.stats_job.pipe = nullptr;
}

void *stats_reader(void *stream)
{
    // Static, as the result outlives the thread; never cleared, as what a run
    // did not bring is taken from the one before. At most one run exists.
    static float stats_values[stats_value_count];
    auto *pipe = static_cast<FILE *>(stream);
    if (pipe == nullptr)
        return stats_values;
    for (float &value : stats_values)
        // A number that is not there shows as the old one; the rest then fails too.
        // The width is far beyond any number, and keeps the memory small that the
        // library takes for one of endless digits.
        (void)!std::fscanf(pipe, "%4095f\n", &value);
    return stats_values;
}

} // namespace vimbo
