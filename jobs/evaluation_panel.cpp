#include "jobs/evaluation_panel.hpp"

#include "ui/flags.hpp"
#include "ui/nuklear.hpp"

namespace vimbo
{

namespace
{

constexpr float row_height = 32;

struct unit_range {
    double least, most, step;
    float step_per_pixel;
};
constexpr unit_range unit_um_range = {1.0, 1000.0, 1.0, 0.25F};

void stop_row(nk_context *context)
{
    nk_layout_row_dynamic(context, row_height, 1);
    if (nk_button_label(context, "Cancel") != 0)
        request_stop();
}

void start_row(frame_state &frame, evaluation_state &evaluation, const mosaic_state &mosaic,
               const char *source_text)
{
    nk_layout_row_dynamic(frame.context, row_height, 2);
    if (nk_button_label(frame.context, "Evaluate") != 0)
        start_evaluation(frame, evaluation, source_text);
    if (nk_button_label(frame.context, "Integrate") != 0)
        start_integration(frame, evaluation, mosaic, source_text);
}

void options_row(frame_state &frame, evaluation_state &evaluation)
{
    static constexpr float widths[] = {0.25F, 0.25F, 0.5F};
    nk_layout_row(frame.context, NK_DYNAMIC, row_height, 3, widths);
    nk_checkbox_flags_label(frame.context, "Raw", &frame.ui_flags, ui_flag::eval_raw);
    nk_checkbox_flags_label(frame.context, "Center", &frame.ui_flags, ui_flag::eval_center);
    nk_property_double(frame.context, "Unit [µm]", unit_um_range.least, &evaluation.unit_um,
                       unit_um_range.most, unit_um_range.step, unit_um_range.step_per_pixel);
}

} // namespace

void evaluation_panel(frame_state &frame, evaluation_state &evaluation, mosaic_state &mosaic,
                      const char *source_text)
{
    nk_context *context = frame.context;
    if (nk_group_begin(context, "Evaluation",
                       NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR | NK_WINDOW_TITLE) == 0)
        return;
    poll_evaluation(frame, evaluation, mosaic);
    if (!frame.input_only)
        animate_progress(evaluation);
    if (has_flag(frame.ui_flags, ui_flag::eval_running))
        stop_row(context);
    else
        start_row(frame, evaluation, mosaic, source_text);
    options_row(frame, evaluation);
    const int line = output_box(context, evaluation.output_box, evaluation.eval_text);
    if (line != 0)
        evaluation.wanted_line = line;
    nk_group_end(context);
}

} // namespace vimbo
