#include "app/main_panel.hpp"

#include "jobs/evaluation_panel.hpp"
#include "sources/tray_bar.hpp"
#include "ui/flags.hpp"
#include "ui/nuklear.hpp"
#include "ui/open_list.hpp"
#include "ui/take_key.hpp"

#include <utility>

namespace vimbo
{

namespace
{

constexpr float panel_width = 256; // at least
constexpr float toggle_width = 24;
constexpr float toggle_height = 24;
constexpr float upper_height = 512;     // while the lower row is shown
constexpr float above_lower_row = 616;  // what the other rows take of the window
constexpr float beside_upper_row = 104; // the same while there is no lower row

void toggle_button(frame_state &frame, const char *label, std::uint32_t ui_flag)
{
    if (nk_button_label(frame.context, label) != 0)
        frame.ui_flags ^= ui_flag;
}

// A panel, a toggle, and a second panel while it is shown.
void begin_body_row(nk_context *context, float height, bool second_panel)
{
    nk_layout_row_template_begin(context, height);
    nk_layout_row_template_push_variable(context, panel_width);
    nk_layout_row_template_push_static(context, toggle_width);
    if (second_panel)
        nk_layout_row_template_push_variable(context, panel_width);
    nk_layout_row_template_end(context);
}

void upper_row(app_state &app)
{
    frame_state &frame = app.frame;
    const float height = has_flag(frame.ui_flags, ui_flag::bottom_shown)
                             ? upper_height
                             : static_cast<float>(frame.window_height) - beside_upper_row;
    begin_body_row(frame.context, height, has_flag(frame.ui_flags, ui_flag::stats_shown));
    source_editor(frame, app.editor);
    toggle_button(frame, "|", ui_flag::stats_shown);
    if (has_flag(frame.ui_flags, ui_flag::stats_shown))
        statistics_panel(frame, app.statistics, app.mosaic);
}

void lower_row(app_state &app)
{
    frame_state &frame = app.frame;
    begin_body_row(frame.context, static_cast<float>(frame.window_height) - above_lower_row,
                   has_flag(frame.ui_flags, ui_flag::preview_shown));
    evaluation_panel(frame, app.evaluation, app.mosaic, app.editor.source_text);
    if (app.evaluation.wanted_line != 0)
        show_line(app.editor, std::exchange(app.evaluation.wanted_line, 0));
    toggle_button(frame, "|", ui_flag::preview_shown);
    if (has_flag(frame.ui_flags, ui_flag::preview_shown))
        preview_panel(frame, app.preview);
}

} // namespace

void initialise_panels(app_state &app)
{
    initialise_source_editor(app.editor);
    initialise_tray_bar(app.bar);
    format_mosaic_path(app.mosaic);
}

void reset_frame_flags(frame_state &frame)
{
    frame.frame_flags &= frame_flag::return_label;
}

void main_panel(app_state &app)
{
    frame_state &frame = app.frame;
    // An earlier layout of this frame may have had it; this one may not.
    frame.frame_flags &= ~frame_flag::preview_laid_out;
    const struct nk_rect whole_window = nk_rect(0, 0, static_cast<float>(frame.window_width),
                                                static_cast<float>(frame.window_height));
    if (nk_begin(frame.context, "MeRo", whole_window, NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR) !=
        0) {
        if (take_key(frame.context, escape_key) && !close_open_list(frame.context))
            leave_save_as(frame, app.bar, app.editor);
        tray_bar(frame, app.bar, app.editor, app.mosaic);
        upper_row(app);
        nk_layout_row_dynamic(frame.context, toggle_height, 1);
        toggle_button(frame, "-", ui_flag::bottom_shown);
        if (has_flag(frame.ui_flags, ui_flag::bottom_shown))
            lower_row(app);
    }
    nk_end(frame.context);
}

} // namespace vimbo
