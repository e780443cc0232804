// Undo and redo for the source editor. The toolkit's own remembers at most a
// thousand characters, forgets at every click and misses what is typed into the
// middle of a text; this one sees only texts, before and after.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace vimbo
{

inline constexpr std::size_t history_records = 2048;
/// Room for the texts of all records: eight times a full source, deleted and
/// another one put in its place.
inline constexpr std::size_t history_bytes = std::size_t{1} << 20;

/// One change: at byte `position`, `removed` bytes gave way to `inserted` ones.
/// Both texts stand one after the other in the history's bytes.
struct edit_record {
    std::size_t position;
    std::size_t removed;
    std::size_t inserted;
    std::size_t storage; // where in the history's bytes
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
/// `inserted`, which lies in the history until its next change.
struct text_change {
    std::size_t position;
    std::size_t removed;
    std::string_view inserted;
};

/// Forgets everything.
void clear_history(edit_history &history);

/// Notes that `before` has become `after`; what was undone can then no longer be
/// redone. Characters typed one after the other become one record a word. The
/// oldest records go when there is no room; a change that no room suffices for
/// clears the history.
void note_change(edit_history &history, std::string_view before, std::string_view after);

/// Takes the last change that was not undone. False when there is none.
bool take_undo(edit_history &history, text_change &change);

/// Takes the last change that was undone. False when there is none.
bool take_redo(edit_history &history, text_change &change);

} // namespace vimbo
