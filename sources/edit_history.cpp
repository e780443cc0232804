#include "sources/edit_history.hpp"

#include "ui/utf8.hpp"

#include <algorithm>
#include <cstring>

namespace vimbo
{

namespace
{

struct difference {
    std::size_t position;
    std::string_view removed;
    std::string_view inserted;
};

// The smallest stretch that differs, from the start of a character on.
difference find_difference(std::string_view before, std::string_view after)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t start = 0;
    while (start < shorter && before[start] == after[start])
        ++start;
    while (start > 0 && start < shorter && is_continuation(before[start]))
        --start;
    std::size_t same_end = 0;
    while (same_end < shorter - start &&
           before[before.size() - 1 - same_end] == after[after.size() - 1 - same_end])
        ++same_end;
    return {start, before.substr(start, before.size() - start - same_end),
            after.substr(start, after.size() - start - same_end)};
}

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

// Typing goes on right behind the last record's insertion.
bool extends_last(const edit_history &history, const difference &change)
{
    constexpr std::size_t longest_typed = 64; // bytes in one frame; more was pasted
    if (history.undoable == 0 || !change.removed.empty() || change.inserted.size() > longest_typed)
        return false;
    const edit_record &last = history.records[history.undoable - 1];
    return last.removed == 0 && last.inserted > 0 &&
           change.position == last.position + last.inserted &&
           continues_word(history.bytes[history.byte_count - 1], change.inserted.front());
}

void store(edit_history &history, std::string_view text)
{
    std::memcpy(history.bytes + history.byte_count, text.data(), text.size());
    history.byte_count += text.size();
}

} // namespace

void clear_history(edit_history &history)
{
    history.record_count = 0;
    history.undoable = 0;
    history.byte_count = 0;
}

void note_change(edit_history &history, std::string_view before, std::string_view after)
{
    const difference change = find_difference(before, after);
    if (change.removed.empty() && change.inserted.empty())
        return;
    drop_redoable(history);
    const bool extend = extends_last(history, change);
    if (!make_room(history, change.removed.size() + change.inserted.size())) {
        clear_history(history);
        return;
    }
    if (extend && history.record_count > 0) {
        history.records[history.record_count - 1].inserted += change.inserted.size();
    } else {
        history.records[history.record_count++] = {change.position, change.removed.size(),
                                                   change.inserted.size(), history.byte_count};
        ++history.undoable;
        store(history, change.removed);
    }
    store(history, change.inserted);
}

bool take_undo(edit_history &history, text_change &change)
{
    if (history.undoable == 0)
        return false;
    const edit_record &record = history.records[--history.undoable];
    change = {record.position, record.inserted,
              std::string_view(history.bytes + record.storage, record.removed)};
    return true;
}

bool take_redo(edit_history &history, text_change &change)
{
    if (history.undoable == history.record_count)
        return false;
    const edit_record &record = history.records[history.undoable++];
    change = {record.position, record.removed,
              std::string_view(history.bytes + record.storage + record.removed, record.inserted)};
    return true;
}

} // namespace vimbo
