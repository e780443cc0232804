#pragma once

#include "mosaic/mosaic.hpp"
#include "stats/stats_run.hpp"
#include "ui/frame_state.hpp"

#include <cstdint>

namespace vimbo
{

/// Main thread only. Shown while ui_flag::stats_shown is set.
struct statistics_state {
    stats_run_state run;
    std::int32_t stats_chart;    // 0 locality, 1 directions, 2 moves
    std::uint32_t stats_spinner; // frames seen while a run lasted
};

/// The Statistics panel, one cell of the row that is being laid out: run button
/// or spinner, choice of chart, the chart with its scale and labels.
void statistics_panel(frame_state &frame, statistics_state &statistics, const mosaic_state &mosaic);

} // namespace vimbo
