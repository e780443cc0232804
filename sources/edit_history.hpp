// Undo and redo for the source editor. The toolkit's own remembers at most a
// thousand characters, forgets at every click and misses what is typed into the
// middle of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vimbo
{

inline constexpr std::size_t history_records = 2048;
/// Room for the texts of all records: eight times a full source, deleted and
/// another one put in its place.
inline constexpr std::size_t history_bytes = std::size_t{1} << 20;

/// How a change came about: what is typed, or taken away character by character,
/// becomes one record a word, however many layouts it came in.
enum class edit_kind : std::uint8_t {
    whole,         // a record of its own: a paste, another source
    typed,         // characters, in place of the selection if there is one
    erased_before, // the character before the cursor
    erased_behind, // the character behind it
};

/// One change: at byte `position`, `removed` gave way to `inserted`. The cursor
/// stood, and then stands, at these bytes.
struct edit_step {
    edit_kind kind;
    std::size_t position;
    std::string_view removed;
    std::string_view inserted;
    std::size_t cursor_before;
    std::size_t cursor_after;
};

/// A change as it is kept. Both texts stand one after the other in the history's
/// bytes.
struct edit_record {
    edit_kind kind;
    std::size_t position;
    std::size_t removed;
    std::size_t inserted;
    std::size_t storage; // where in the history's bytes
    std::size_t cursor_before;
    std::size_t cursor_after;
};

/// All zero: nothing to undo. Main thread only.
struct edit_history {
    edit_record records[history_records];
    std::size_t record_count; // those that can be undone, then those that can be redone
    std::size_t undoable;
    char bytes[history_bytes];
    std::size_t byte_count;
};

/// What is to be done to a text: at byte `position`, `removed` bytes give way to
/// `inserted`, which lies in the history until its next change, and the cursor goes
/// to byte `cursor`.
struct text_change {
    std::size_t position;
    std::size_t removed;
    std::string_view inserted;
    std::size_t cursor;
};

/// Notes a change; what was undone can then no longer be redone. The oldest
/// records go when there is no room; a change that no room suffices for clears the
/// history.
void note_edit(edit_history &history, const edit_step &edit);

/// Takes the last change that was not undone. False when there is none.
bool take_undo(edit_history &history, text_change &change);

/// Takes the last change that was undone. False when there is none.
bool take_redo(edit_history &history, text_change &change);

} // namespace vimbo
