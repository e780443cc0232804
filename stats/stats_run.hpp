// Runs the statistics tool `plimb` on the current mosaic and takes its numbers.
#pragma once

#include "jobs/command_job.hpp"
#include "mosaic/mosaic.hpp"
#include "ui/frame_state.hpp"

#include <cstddef>
#include <span>

namespace vimbo
{

inline constexpr std::size_t locality_count = 32;
inline constexpr std::size_t direction_count = 16;
inline constexpr std::size_t move_count = 2;
/// The tool's output: the three groups in this order.
inline constexpr std::size_t stats_value_count = locality_count + direction_count + move_count;

/// What the charts show, and the run that will replace it. Main thread only.
struct stats_run_state {
    float stats_locality[locality_count];    // r̿(k), k = 1 to 32
    float stats_directions[direction_count]; // mark length per direction over all length
    float stats_moves[move_count];           // mark, then jump length over all length
    /// Its running bit is ui_flag::stats_running.
    command_job stats_job;
};

/// Clears the locality and direction charts and starts the tool on the current
/// mosaic. The moves stay until the run has ended. A tray with a double quote in its
/// path is refused, and the charts stay.
void start_statistics(frame_state &frame, stats_run_state &run, const mosaic_state &mosaic);

/// Takes the numbers once the reader has ended. To be called while a run lasts.
void poll_statistics(frame_state &frame, stats_run_state &run);

/// The reader thread's function: reads the numbers from the stream (a FILE *,
/// or null) into floats of its own and returns them. One that cannot be read,
/// and all behind it, keeps the value of the run before.
void *stats_reader(void *stream);

} // namespace vimbo
