#include "jobs/evaluation.hpp"

#include "jobs/eval_reader.hpp"
#include "platform/files.hpp"
#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"

#include <cstdio>

namespace vimbo
{

namespace
{

constexpr char stop_marker_directory[] = "/tmp";
constexpr char stop_marker_path[] = "/tmp/mero.end";
constexpr std::size_t progress_length = 64;

constexpr int status_ok = 0;
constexpr int status_unknown = 3;
constexpr int status_abnormal = -1;

// Room for the options, the temporary path and the quoted mosaic path.
constexpr std::size_t command_capacity = 64 + temp_source_path_capacity + mosaic_path_capacity;

// Clears the last run's text and hands the edited text over in a file. The
// evaluator starts even if that could not be written, on an older text or none.
void prepare_run(evaluation_state &evaluation, const char *source_text)
{
    clear_text(evaluation.eval_text);
    evaluation.output_box.wants_end = true;
    if (evaluation.temp_source_path[0] == '\0') {
        temporary_directory(evaluation.temp_source_path);
        append_text(evaluation.temp_source_path, "/vimbo");
    }
    if (!overwrite_file(evaluation.temp_source_path, source_text, link_use::replaced))
        std::fprintf(stderr, "error: unable to write %s.\n", evaluation.temp_source_path);
}

void start_evaluator(frame_state &frame, evaluation_state &evaluation, const char *command,
                     std::string_view start_text)
{
    command_job &job = evaluation.eval_job;
    job.pipe = open_command(command);
    if (job.pipe == nullptr) {
        set_text(evaluation.eval_text, "Error: cannot start the evaluator.\n");
        return;
    }
    set_text(evaluation.eval_text, start_text);
    // Other than the statistics', this job then stays as it is, and no further one can
    // be started: the tool runs on unseen, and writes to the files that the next run
    // would write to.
    if (!start_job_reader(job, eval_reader, frame.ui_flags, ui_flag::eval_running))
        append_text(evaluation.eval_text, "Error: cannot track results.\n");
}

// Makes the directory where it is missing. An existing mosaic is the evaluator's to
// overwrite; what can be removed where none exists is a link that leads nowhere.
void prepare_mosaic_file(const char *directory, const char *path)
{
    if (!path_exists(directory))
        make_directory(directory);
    if (!path_exists(path))
        remove_file(path);
}

char &last_character(std::span<char> text)
{
    const std::size_t length = text_length(text);
    return text[length == 0 ? 0 : length - 1];
}

void stop_turning(evaluation_state &evaluation)
{
    char &last = last_character(evaluation.eval_text);
    if (last == '-' || last == '/' || last == '\\' || last == '|')
        last = '.';
}

void finish_evaluation(frame_state &frame, evaluation_state &evaluation, mosaic_state &mosaic,
                       const char *output)
{
    stop_turning(evaluation);
    append_text(evaluation.eval_text, output[0] != '\0' ? "\nEvaluation:\n" : "\n");
    append_text(evaluation.eval_text, output);
    append_text(evaluation.eval_text, status_line(close_command(evaluation.eval_job.pipe)));
    evaluation.output_box.wants_end = true;
    frame.ui_flags &= ~ui_flag::eval_running;
    evaluation.eval_job.pipe = nullptr;
    format_mosaic_path(mosaic);
    request_mosaic_reload(frame);
}

} // namespace

void start_evaluation(frame_state &frame, evaluation_state &evaluation, const char *source_text)
{
    if (!is_idle(evaluation.eval_job, frame.ui_flags, ui_flag::eval_running))
        return;
    prepare_run(evaluation, source_text);
    char command[command_capacity];
    const bool raw = has_flag(frame.ui_flags, ui_flag::eval_raw);
    format_text(command, "mero -S %s%s", raw ? "-r " : "", evaluation.temp_source_path);
    start_evaluator(frame, evaluation, command, "Compilling."); // spelt so on purpose
}

void start_integration(frame_state &frame, evaluation_state &evaluation, const mosaic_state &mosaic,
                       const char *source_text)
{
    if (!is_idle(evaluation.eval_job, frame.ui_flags, ui_flag::eval_running))
        return;
    if (!can_be_quoted(mosaic.tray_directory)) {
        set_text(evaluation.eval_text, "Error: the tray's path has a double quote.\n");
        evaluation.output_box.wants_end = true;
        return;
    }
    prepare_run(evaluation, source_text);
    char directory[mosaic_path_capacity];
    format_mosaic_directory(mosaic, directory);
    char path[mosaic_path_capacity];
    format_mosaic_path(mosaic, path);
    prepare_mosaic_file(directory, path);
    char command[command_capacity];
    const bool center = has_flag(frame.ui_flags, ui_flag::eval_center);
    format_text(command, "mero %s-s %f %s \"%s\"", center ? "-c " : "", evaluation.unit_um,
                evaluation.temp_source_path, path);
    start_evaluator(frame, evaluation, command, "Building.");
}

void request_stop()
{
    // Not every system brings it along.
    make_directory(stop_marker_directory);
    overwrite_file(stop_marker_path, "", link_use::replaced);
}

void poll_evaluation(frame_state &frame, evaluation_state &evaluation, mosaic_state &mosaic)
{
    void *output = nullptr;
    if (has_flag(frame.ui_flags, ui_flag::eval_running) && poll_job(evaluation.eval_job, output))
        finish_evaluation(frame, evaluation, mosaic, static_cast<const char *>(output));
}

void animate_progress(evaluation_state &evaluation)
{
    if (evaluation.eval_job.pipe == nullptr)
        return;
    const std::size_t length = text_length(evaluation.eval_text);
    if (length < progress_length) {
        append_text(evaluation.eval_text, ".");
        return;
    }
    if (length > progress_length)
        return;
    char &last = last_character(evaluation.eval_text);
    switch (last) {
    case '.':
    case '/':
        last = '-';
        break;
    case '-':
        last = '\\';
        break;
    case '\\':
        last = '|';
        break;
    case '|':
        last = '/';
        break;
    default:
        break;
    }
}

std::string_view status_line(int status)
{
    switch (status) {
    case status_abnormal:
        return "Status: abnormal.\n";
    case status_unknown:
        return "Status: uknown.\n"; // spelt so on purpose
    case status_ok:
        return "Status: ok.\n";
    default:
        return "Status: error.\n";
    }
}

} // namespace vimbo
