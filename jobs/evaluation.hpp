// Runs the evaluator `mero` on the edited text: Evaluate, Integrate, Cancel, and
// how a run ends. The panel that offers them is evaluation_panel.
#pragma once

#include "jobs/command_job.hpp"
#include "jobs/output_box.hpp"
#include "mosaic/mosaic.hpp"
#include "ui/frame_state.hpp"

#include <cstddef>
#include <string_view>

namespace vimbo
{

inline constexpr std::size_t eval_text_capacity = 8192;
inline constexpr std::size_t temp_source_path_capacity = 261;

/// Main thread only.
struct evaluation_state {
    /// The progress line, then the tool's output and the status line. The output
    /// box edits it in place.
    char eval_text[eval_text_capacity];
    output_box_state output_box;
    /// The source's line that the operator wants to see, from 1; 0 when none. Whoever
    /// shows it takes it away.
    int wanted_line;
    /// The edited text's copy that the evaluator reads. Empty until first needed.
    char temp_source_path[temp_source_path_capacity];
    double unit_um = 35.0;
    /// Its running bit is ui_flag::eval_running.
    command_job eval_job;
};

/// Compiles `source_text`. Does nothing unless the evaluator is idle.
void start_evaluation(frame_state &frame, evaluation_state &evaluation, const char *source_text);

/// Builds the current mosaic from `source_text`, creating the tray's directory
/// for mosaics where it is missing. Does nothing unless the evaluator is idle. A tray
/// with a double quote in its path is refused, and eval_text says so.
void start_integration(frame_state &frame, evaluation_state &evaluation, const mosaic_state &mosaic,
                       const char *source_text);

/// Asks the running evaluator to stop, by a file that it looks for.
void request_stop();

/// While a run lasts: takes its end, its output and status, when it has come,
/// and asks for the mosaic to be read again, as the tool may have rewritten it.
void poll_evaluation(frame_state &frame, evaluation_state &evaluation, mosaic_state &mosaic);

/// One step of the progress line: a dot more, up to 64 characters, then its last
/// character turns.
void animate_progress(evaluation_state &evaluation);

/// The line that tells the evaluator's exit status, as close_command gives it.
std::string_view status_line(int status);

} // namespace vimbo
