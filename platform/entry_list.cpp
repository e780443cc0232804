#include "platform/entry_list.hpp"

#include <algorithm>
#include <cstring>

namespace vimbo
{

namespace
{

entry entry_at(const entry_memory &memory, std::uint32_t start)
{
    return {memory.texts + start + 1, static_cast<entry_type>(memory.texts[start])};
}

bool is_before(const entry &one, const entry &other)
{
    const bool one_last = one.type >= entry_type::directory;
    const bool other_last = other.type >= entry_type::directory;
    return one_last == other_last ? std::strcmp(one.name, other.name) < 0 : other_last;
}

} // namespace

entry_list begin_list(const entry_memory &memory)
{
    return {memory.text_bytes, memory.entry_count, memory.entry_count, memory.entry_count};
}

bool append_entry(entry_memory &memory, entry_list &list, const entry &added)
{
    const std::size_t size = std::strlen(added.name) + 1;
    if (memory.entry_count == entry_memory::entries ||
        entry_memory::bytes - memory.text_bytes < 1 + size)
        return false;
    memory.starts[memory.entry_count++] = static_cast<std::uint32_t>(memory.text_bytes);
    memory.texts[memory.text_bytes++] = static_cast<char>(added.type);
    std::memcpy(memory.texts + memory.text_bytes, added.name, size);
    memory.text_bytes += size;
    list.end = memory.entry_count;
    return true;
}

void sort_list(entry_memory &memory, const entry_list &list)
{
    std::sort(memory.starts + list.first, memory.starts + list.end,
              [&](std::uint32_t one, std::uint32_t other) {
                  return is_before(entry_at(memory, one), entry_at(memory, other));
              });
}

bool next_entry(const entry_memory &memory, entry_list &list, entry &found)
{
    if (list.next == list.end)
        return false;
    found = entry_at(memory, memory.starts[list.next++]);
    return true;
}

void drop_list(entry_memory &memory, const entry_list &list)
{
    memory.text_bytes = list.first_text;
    memory.entry_count = list.first;
}

} // namespace vimbo
