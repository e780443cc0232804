#include "sources/edit_history.hpp"

#include <algorithm>
#include <cstring>

namespace vimbo
{

namespace
{

void drop_redoable(edit_history &history)
{
    if (history.undoable < history.record_count)
        history.byte_count = history.records[history.undoable].storage;
    history.record_count = history.undoable;
}

void drop_oldest(edit_history &history, std::size_t count)
{
    const std::size_t freed =
        count < history.record_count ? history.records[count].storage : history.byte_count;
    std::memmove(history.bytes, history.bytes + freed, history.byte_count - freed);
    history.byte_count -= freed;
    std::copy(history.records + count, history.records + history.record_count, history.records);
    history.record_count -= count;
    history.undoable -= count;
    for (std::size_t i = 0; i < history.record_count; ++i)
        history.records[i].storage -= freed;
}

// False when not even the empty history has the room.
bool make_room(edit_history &history, std::size_t bytes)
{
    if (bytes > history_bytes)
        return false;
    // In larger steps, as each moves what stays.
    while (history.record_count == history_records || history.byte_count + bytes > history_bytes)
        drop_oldest(history, history.record_count / 4 + 1);
    return true;
}

// Within a word, or within the blanks behind it.
bool continues_word(char last, char next)
{
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    return last != '\n' && next != '\n' && (is_blank(next) || !is_blank(last));
}

// Bytes of the text up to where the next word begins.
std::size_t first_word(std::string_view text)
{
    std::size_t end = 1;
    while (end < text.size() && continues_word(text[end - 1], text[end]))
        ++end;
    return std::min(end, text.size());
}

bool extends_last(const edit_history &history, const edit_step &edit)
{
    if (history.undoable == 0)
        return false;
    const edit_record &last = history.records[history.undoable - 1];
    if (last.kind != edit.kind)
        return false;
    const char *bytes = history.bytes + last.storage;
    const char *end = history.bytes + history.byte_count;
    switch (edit.kind) {
    case edit_kind::typed:
        return edit.removed.empty() && edit.position == last.position + last.inserted &&
               continues_word(end[-1], edit.inserted.front());
    case edit_kind::erased_before:
        return edit.position + edit.removed.size() == last.position &&
               continues_word(edit.removed.back(), *bytes);
    case edit_kind::erased_behind:
        return edit.position == last.position && continues_word(end[-1], edit.removed.front());
    case edit_kind::whole:
        break;
    }
    return false;
}

void store(edit_history &history, std::string_view text)
{
    text.copy(history.bytes + history.byte_count, text.size()); // not memcpy: it may be empty
    history.byte_count += text.size();
}

void add_record(edit_history &history, const edit_step &edit)
{
    history.records[history.record_count++] = {
        edit.kind,          edit.position,      edit.removed.size(), edit.inserted.size(),
        history.byte_count, edit.cursor_before, edit.cursor_after};
    ++history.undoable;
    store(history, edit.removed);
    store(history, edit.inserted);
}

// The last record's bytes are the last ones, so it can grow.
void extend_last(edit_history &history, const edit_step &edit)
{
    edit_record &last = history.records[history.record_count - 1];
    last.removed += edit.removed.size();
    last.inserted += edit.inserted.size();
    last.cursor_after = edit.cursor_after;
    if (edit.kind != edit_kind::erased_before) {
        store(history, edit.removed);
        store(history, edit.inserted);
        return;
    }
    last.position = edit.position;
    char *bytes = history.bytes + last.storage;
    std::memmove(bytes + edit.removed.size(), bytes, history.byte_count - last.storage);
    std::memcpy(bytes, edit.removed.data(), edit.removed.size());
    history.byte_count += edit.removed.size();
}

// A change that is a word at most, or no typing.
void note_step(edit_history &history, const edit_step &edit)
{
    drop_redoable(history);
    const bool extend = extends_last(history, edit);
    if (!make_room(history, edit.removed.size() + edit.inserted.size())) {
        history.record_count = 0;
        history.undoable = 0;
        history.byte_count = 0;
        return;
    }
    if (extend && history.record_count > 0)
        extend_last(history, edit);
    else
        add_record(history, edit);
}

} // namespace

void note_edit(edit_history &history, const edit_step &edit)
{
    if (edit.removed.empty() && edit.inserted.empty())
        return;
    if (edit.kind != edit_kind::typed || edit.inserted.empty()) {
        note_step(history, edit);
        return;
    }
    edit_step step = edit;
    std::string_view left = edit.inserted;
    while (!left.empty()) {
        step.inserted = left.substr(0, first_word(left));
        step.cursor_after = step.position + step.inserted.size();
        note_step(history, step);
        left.remove_prefix(step.inserted.size());
        step.position = step.cursor_after;
        step.cursor_before = step.cursor_after;
        step.removed = {};
    }
}

bool take_undo(edit_history &history, text_change &change)
{
    if (history.undoable == 0)
        return false;
    const edit_record &record = history.records[--history.undoable];
    change = {record.position, record.inserted,
              std::string_view(history.bytes + record.storage, record.removed),
              record.cursor_before};
    return true;
}

bool take_redo(edit_history &history, text_change &change)
{
    if (history.undoable == history.record_count)
        return false;
    const edit_record &record = history.records[history.undoable++];
    change = {record.position, record.removed,
              std::string_view(history.bytes + record.storage + record.removed, record.inserted),
              record.cursor_after};
    return true;
}

} // namespace vimbo
