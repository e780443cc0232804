// The top row: quit, save-as, delete, the pickers of source and tray, and the
// choice of the mosaic.
#pragma once

#include "mosaic/mosaic.hpp"
#include "sources/path_picker.hpp"
#include "sources/source_editor.hpp"
#include "ui/frame_state.hpp"

#include <cstddef>
#include <cstdint>

namespace vimbo
{

/// The longest source directory that source_path takes whole; the system opens
/// nothing below a longer one.
inline constexpr std::size_t source_directory_capacity = 4096;
/// The name field's bytes behind the directory part, its zero included.
inline constexpr std::size_t name_field_capacity = 260;

/// Main thread only.
struct tray_bar_state {
    const char *source_directory = "./";
    /// The open source file. Named "--" until one is opened, "-" after its
    /// deletion.
    char source_path[source_directory_capacity + 1 + name_field_capacity];
    std::int64_t delete_armed_at; // calendar time in seconds

    /// While a name is typed: source_path as it was, and whether the editor had the
    /// focus, which it gets back.
    char path_before[source_directory_capacity + 1 + name_field_capacity];
    bool editor_had_focus;
    /// What the next layout gives the focus to.
    bool name_field_wants_focus;
    bool editor_wants_focus;
    path_picker_state picker;
};

/// Once, before the first layout: no file is open yet.
void initialise_tray_bar(tray_bar_state &bar);

/// Makes `path` the open source file and puts its text into the editor, which gets the
/// focus, unless it is open already.
void open_source(tray_bar_state &bar, source_editor_state &editor, const char *path);

/// The "+" button's press: the name field takes the buttons' place, and the focus.
void enter_save_as(frame_state &frame, tray_bar_state &bar, source_editor_state &editor);

/// The "!" button's press beside it: what was typed is taken back. Does nothing unless
/// a name is being typed.
void leave_save_as(frame_state &frame, tray_bar_state &bar, const source_editor_state &editor);

/// Makes `path` the tray, unless it is already. One that does not fit into
/// tray_directory is not taken.
void choose_tray(frame_state &frame, mosaic_state &mosaic, const char *path);

/// The "-" button's press at calendar time `now`: the first arms it, the second
/// removes the open file.
void press_delete(frame_state &frame, tray_bar_state &bar, std::int64_t now);

/// Disarms the "-" button once more than three seconds have passed.
void lapse_delete(frame_state &frame, const tray_bar_state &bar, std::int64_t now);

/// The row.
void tray_bar(frame_state &frame, tray_bar_state &bar, source_editor_state &editor,
              mosaic_state &mosaic);

} // namespace vimbo
