#include "sources/tray_bar.hpp"

#include "platform/files.hpp"
#include "sources/path_name.hpp"
#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"
#include "ui/nuklear.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iterator>

namespace vimbo
{

namespace
{

constexpr float row_height = 32;
constexpr float button_width = 32;
constexpr float picker_width = 256;
constexpr float chooser_width = 64;
constexpr float chooser_height = 320;
constexpr int chooser_item_height = 32;
constexpr std::int64_t delete_stays_armed = 3; // seconds

void begin_row(nk_context *context, int buttons)
{
    nk_layout_row_template_begin(context, row_height);
    for (int i = 0; i < buttons; ++i)
        nk_layout_row_template_push_static(context, button_width);
    nk_layout_row_template_push_variable(context, picker_width);
    nk_layout_row_template_push_variable(context, picker_width);
    nk_layout_row_template_push_static(context, chooser_width);
    nk_layout_row_template_end(context);
}

void quit_button(frame_state &frame)
{
    const char *label = has_flag(frame.frame_flags, frame_flag::return_label) ? "↩" : "X";
    if (nk_button_label(frame.context, label) != 0)
        frame.frame_flags |= frame_flag::quit;
}

void save_as_button(frame_state &frame, tray_bar_state &bar, source_editor_state &editor)
{
    if (nk_button_label(frame.context, "+") != 0)
        enter_save_as(frame, bar, editor);
}

void delete_button(frame_state &frame, tray_bar_state &bar)
{
    const auto now = static_cast<std::int64_t>(std::time(nullptr));
    lapse_delete(frame, bar, now);
    const bool armed = has_flag(frame.ui_flags, ui_flag::delete_armed);
    if (nk_button_label(frame.context, armed ? "!" : "-") != 0)
        press_delete(frame, bar, now);
}

void source_picker(frame_state &frame, tray_bar_state &bar, source_editor_state &editor)
{
    const char *picked = path_picker(frame.context, bar.picker, bar.source_directory,
                                     path_name_part(bar.source_path), picker_mode::files);
    if (picked != nullptr)
        open_source(bar, editor, picked);
}

void cancel_button(frame_state &frame, tray_bar_state &bar, const source_editor_state &editor)
{
    if (nk_button_label(frame.context, "!") != 0)
        leave_save_as(frame, bar, editor);
}

void focus_name_field(nk_context *context, const char *name)
{
    nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
    nk_edit_state &field = context->current->edit;
    field.cursor = nk_utf_len(name, nk_strlen(name));
    field.sel_start = field.cursor;
    field.sel_end = field.cursor;
    field.scrollbar = {};
}

// The next layout has one edit box less, so that Nuklear would take the one behind it
// for the one that has the focus.
void close_name_field(frame_state &frame, tray_bar_state &bar, const source_editor_state &editor)
{
    bar.editor_wants_focus = bar.editor_had_focus || editor.source_edit.active != 0;
    nk_edit_unfocus(frame.context);
    frame.ui_flags &= ~ui_flag::save_as_mode;
}

// The field edits the name inside source_path, so the directory part stays.
void name_field(frame_state &frame, tray_bar_state &bar, const source_editor_state &editor)
{
    char *name = path_name_part(bar.source_path);
    if (bar.name_field_wants_focus)
        focus_name_field(frame.context, name);
    bar.name_field_wants_focus = false;
    // A typed separator moves the name part on, toward the end of the buffer.
    const auto room = static_cast<std::size_t>(std::end(bar.source_path) - name);
    const nk_flags result = nk_edit_string_zero_terminated(
        frame.context, NK_EDIT_ALWAYS_INSERT_MODE | NK_EDIT_SELECTABLE | NK_EDIT_SIG_ENTER, name,
        static_cast<int>(std::min(room, name_field_capacity)), nk_filter_default);
    if ((result & NK_EDIT_COMMITED) == 0)
        return;
    if (write_text_file(bar.source_path, editor.source_text) != 0)
        std::fputs("error: unable to save.\n", stderr);
    close_name_field(frame, bar, editor);
}

void tray_picker(frame_state &frame, tray_bar_state &bar, mosaic_state &mosaic)
{
    char parent[tray_directory_capacity];
    set_text(parent, path_parent(mosaic.tray_directory));
    const char *picked =
        path_picker(frame.context, bar.picker, parent, path_name_part(mosaic.tray_directory),
                    picker_mode::directories);
    if (picked != nullptr)
        choose_tray(frame, mosaic, picked);
}

void mosaic_chooser(frame_state &frame, mosaic_state &mosaic)
{
    static const char *names[mosaics_per_tray] = {"0", "1", "2", "3", "4", "5", "6", "7"};
    const std::int32_t previous = mosaic.mosaic_index;
    nk_combobox(frame.context, names, mosaics_per_tray, &mosaic.mosaic_index, chooser_item_height,
                nk_vec2(chooser_width, chooser_height));
    if (mosaic.mosaic_index == previous)
        return;
    format_mosaic_path(mosaic);
    request_mosaic_reload(frame);
}

} // namespace

void initialise_tray_bar(tray_bar_state &bar)
{
    format_text(bar.source_path, "%.*s/--", static_cast<int>(source_directory_capacity),
                bar.source_directory);
}

void open_source(tray_bar_state &bar, source_editor_state &editor, const char *path)
{
    if (std::strcmp(path, bar.source_path) == 0)
        return;
    set_text(bar.source_path, path);
    load_source(editor, path);
    editor.wants_focus = true;
}

void enter_save_as(frame_state &frame, tray_bar_state &bar, source_editor_state &editor)
{
    set_text(bar.path_before, bar.source_path);
    bar.editor_had_focus = editor.source_edit.active != 0;
    bar.name_field_wants_focus = true;
    // In this layout there is no field yet that could have it.
    nk_edit_unfocus(frame.context);
    editor.source_edit.active = 0;
    frame.ui_flags |= ui_flag::save_as_mode;
}

void leave_save_as(frame_state &frame, tray_bar_state &bar, const source_editor_state &editor)
{
    if (!has_flag(frame.ui_flags, ui_flag::save_as_mode))
        return;
    set_text(bar.source_path, bar.path_before);
    close_name_field(frame, bar, editor);
}

void choose_tray(frame_state &frame, mosaic_state &mosaic, const char *path)
{
    if (std::strcmp(path, mosaic.tray_directory) == 0 ||
        std::strlen(path) >= tray_directory_capacity)
        return;
    set_text(mosaic.tray_directory, path);
    format_mosaic_path(mosaic);
    request_mosaic_reload(frame);
}

void press_delete(frame_state &frame, tray_bar_state &bar, std::int64_t now)
{
    if (!has_flag(frame.ui_flags, ui_flag::delete_armed)) {
        bar.delete_armed_at = now;
        frame.ui_flags |= ui_flag::delete_armed;
        return;
    }
    remove_file(bar.source_path);
    set_text(bar.source_path, "-");
    frame.ui_flags &= ~ui_flag::delete_armed;
}

void lapse_delete(frame_state &frame, const tray_bar_state &bar, std::int64_t now)
{
    if (now - bar.delete_armed_at > delete_stays_armed)
        frame.ui_flags &= ~ui_flag::delete_armed;
}

void tray_bar(frame_state &frame, tray_bar_state &bar, source_editor_state &editor,
              mosaic_state &mosaic)
{
    const bool save_as = has_flag(frame.ui_flags, ui_flag::save_as_mode);
    begin_row(frame.context, save_as ? 2 : 3);
    quit_button(frame);
    if (save_as) {
        cancel_button(frame, bar, editor);
        name_field(frame, bar, editor);
    } else {
        editor.wants_focus = editor.wants_focus || bar.editor_wants_focus;
        bar.editor_wants_focus = false;
        save_as_button(frame, bar, editor);
        delete_button(frame, bar);
        source_picker(frame, bar, editor);
    }
    tray_picker(frame, bar, mosaic);
    mosaic_chooser(frame, mosaic);
}

} // namespace vimbo
