#include "stats/stats_panel.hpp"

#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"
#include "ui/nuklear.hpp"
#include "ui/tooltip.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

namespace vimbo
{

namespace
{

constexpr float header_height = 32;
constexpr float run_button_width = 32;
constexpr float choice_width = 256;
constexpr float choice_height = 128;
constexpr int choice_item_height = 32;
constexpr float chart_height = 400;
constexpr float chart_width = 256;
constexpr float scale_width = 40;
constexpr float label_height = 24;
constexpr float scale_gap = 152;

constexpr struct nk_color chart_background = {110, 142, 190, 255};
constexpr struct nk_color chart_colour = {255, 255, 255, 255};
constexpr struct nk_color chart_highlight = {217, 166, 115, 255};

const char *const chart_titles[] = {
    "Locality r̿(k) = |pₖ-p₀|/∑ₖ₌₍₀,₃₂₎|pₖ₊₁-pₖ|",
    "Mark directions ∑l(φ) / L",
    "Mark / jump moves l(on/off)/L",
};

const char *const spinner_frames[] = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█",
                                      "▇", "▆", "▅", "▄", "▃", "▂", "▁", " "};

// Psi for pi, and steps of unlike width: both on purpose.
const char *const direction_labels[] = {"φ",    "-5Ψ/6", "-3Ψ/4", "-2Ψ/3", "-Ψ/2", "-Ψ/3",
                                        "-Ψ/4", "-Ψ/6",  "0",     "Ψ/6",   "Ψ/4",  "Ψ/3",
                                        "Ψ/2",  "2Ψ/3",  "3Ψ/4",  "5Ψ/6",  "Ψ"};

struct chart_values {
    nk_chart_type type;
    std::span<const float> values;
};

chart_values chosen_chart(const statistics_state &statistics)
{
    switch (statistics.stats_chart) {
    case 1:
        return {NK_CHART_COLUMN, statistics.run.stats_directions};
    case 2:
        return {NK_CHART_COLUMN, statistics.run.stats_moves};
    default:
        return {NK_CHART_LINES, statistics.run.stats_locality};
    }
}

void run_cell(frame_state &frame, statistics_state &statistics, const mosaic_state &mosaic)
{
    if (!has_flag(frame.ui_flags, ui_flag::stats_running)) {
        if (nk_button_label(frame.context, "↻") != 0)
            start_statistics(frame, statistics.run, mosaic);
        return;
    }
    nk_label(frame.context, spinner_frames[statistics.stats_spinner % std::size(spinner_frames)],
             NK_TEXT_CENTERED);
    statistics.stats_spinner += frame.input_only ? 0 : 1;
    poll_statistics(frame, statistics.run);
}

void header_row(frame_state &frame, statistics_state &statistics, const mosaic_state &mosaic)
{
    nk_context *context = frame.context;
    nk_layout_row_template_begin(context, header_height);
    nk_layout_row_template_push_static(context, run_button_width);
    nk_layout_row_template_push_variable(context, choice_width);
    nk_layout_row_template_end(context);
    run_cell(frame, statistics, mosaic);
    statistics.stats_chart =
        nk_combo(context, const_cast<const char **>(chart_titles), std::size(chart_titles),
                 statistics.stats_chart, choice_item_height, nk_vec2(choice_width, choice_height));
}

void scale_label(nk_context *context, float height, const char *text)
{
    nk_layout_row_dynamic(context, height, 1);
    nk_label(context, text, NK_TEXT_LEFT);
}

void vertical_scale(nk_context *context)
{
    constexpr char gap[] = "   ";
    if (nk_group_begin(context, "legend", NK_WINDOW_NO_SCROLLBAR) == 0)
        return;
    scale_label(context, label_height, "1.0");
    scale_label(context, scale_gap, gap);
    scale_label(context, label_height, "0.5");
    scale_label(context, scale_gap, gap);
    scale_label(context, label_height, "0.0");
    nk_group_end(context);
}

// Nuklear keeps positions as whole numbers: infinity, and what else lies far off the
// chart, is drawn a little nearer, just as far out of sight, and NaN at zero.
float drawable(float value)
{
    constexpr float far_off = 64;
    return std::isnan(value) ? 0.0F : std::clamp(value, -far_off, far_off);
}

void push_value(frame_state &frame, float value)
{
    if (nk_chart_push(frame.context, drawable(value)) == 0)
        return;
    format_text(frame.scratch_text, "%f", static_cast<double>(value));
    tooltip_in_window(frame, frame.scratch_text);
}

void chart(frame_state &frame, const chart_values &chosen)
{
    nk_context *context = frame.context;
    nk_style_push_color(context, &context->style.chart.background.data.color, chart_background);
    if (nk_chart_begin_colored(context, chosen.type, chart_colour, chart_highlight,
                               static_cast<int>(chosen.values.size()), 0.0F, 1.0F) != 0) {
        for (const float value : chosen.values)
            push_value(frame, value);
        nk_chart_end(context);
    }
    nk_style_pop_color(context);
}

void chart_row(frame_state &frame, const statistics_state &statistics)
{
    nk_context *context = frame.context;
    nk_layout_row_template_begin(context, chart_height);
    nk_layout_row_template_push_static(context, scale_width);
    nk_layout_row_template_push_variable(context, chart_width);
    nk_layout_row_template_end(context);
    vertical_scale(context);
    chart(frame, chosen_chart(statistics));
}

// The scale's column, then `columns` of equal width.
void begin_label_row(nk_context *context, int columns)
{
    nk_layout_row_template_begin(context, label_height);
    nk_layout_row_template_push_static(context, scale_width);
    for (int i = 0; i < columns; ++i)
        nk_layout_row_template_push_dynamic(context);
}

void locality_labels(nk_context *context)
{
    constexpr float last_width = 24;
    begin_label_row(context, 3);
    nk_layout_row_template_push_static(context, last_width);
    nk_layout_row_template_end(context);
    nk_label(context, "k", NK_TEXT_CENTERED);
    nk_label(context, "1", NK_TEXT_LEFT);
    nk_label(context, "16", NK_TEXT_CENTERED);
    nk_label(context, "32", NK_TEXT_RIGHT);
    nk_label(context, " ", NK_TEXT_LEFT);
}

void direction_label_row(nk_context *context)
{
    begin_label_row(context, direction_count);
    nk_layout_row_template_end(context);
    for (const char *label : direction_labels)
        nk_label(context, label, NK_TEXT_CENTERED);
}

void move_labels(nk_context *context)
{
    begin_label_row(context, move_count);
    nk_layout_row_template_end(context);
    nk_label(context, "I", NK_TEXT_CENTERED);
    nk_label(context, "Dark", NK_TEXT_CENTERED);
    nk_label(context, "Light", NK_TEXT_CENTERED);
}

void axis_labels(nk_context *context, std::int32_t stats_chart)
{
    switch (stats_chart) {
    case 1:
        direction_label_row(context);
        break;
    case 2:
        move_labels(context);
        break;
    default:
        locality_labels(context);
        break;
    }
}

} // namespace

void statistics_panel(frame_state &frame, statistics_state &statistics, const mosaic_state &mosaic)
{
    nk_context *context = frame.context;
    if (nk_group_begin(context, "Statistics",
                       NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR | NK_WINDOW_TITLE) == 0)
        return;
    header_row(frame, statistics, mosaic);
    chart_row(frame, statistics);
    axis_labels(context, statistics.stats_chart);
    nk_group_end(context);
}

} // namespace vimbo
