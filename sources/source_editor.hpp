// The text editor that holds the open source.
#pragma once

#include "sources/edit_history.hpp"
#include "sources/editor_mouse.hpp"
#include "sources/text_file.hpp"
#include "ui/frame_state.hpp"
#include "ui/nuklear.hpp"

namespace vimbo
{

/// Main thread only.
struct source_editor_state {
    /// The text, the memory of `source_edit`. Between two layouts it ends at a
    /// zero where the editor counts its last character, whatever that is in
    /// bytes: what is saved and evaluated. A full text ends at the byte that is
    /// always zero behind it.
    char source_text[source_capacity + 1];
    nk_text_edit source_edit;
    /// The next layout gives the editor the focus,
    bool wants_focus;
    /// and puts the cursor at the beginning of this line, in view; 0 for none.
    int wanted_line;
    /// Where a file is read before it enters the editor; keeps the last one.
    char load_buffer[source_capacity];

    /// The byte of the text that its end mark covers, and where.
    int covered_index;
    char covered_byte;

    edit_history history;
    /// Where a pasted text stands before it enters the editor.
    char paste_buffer[source_capacity];

    editor_mouse mouse;
    double laid_out_at; // seconds of the steady clock, of the last layout that was seen
};

/// Once, before the first layout.
void initialise_source_editor(source_editor_state &editor);

/// Reads the file and puts its text, up to the first zero byte, in place of the
/// editor's: one step, which undo takes back. A file that cannot be opened brings
/// the one read before it.
void load_source(source_editor_state &editor, const char *path);

/// Has the next layout go to a line, counted from 1, or to the last one.
void show_line(source_editor_state &editor, int line);

/// The editor, one cell of the row that is being laid out.
void source_editor(frame_state &frame, source_editor_state &editor);

} // namespace vimbo
