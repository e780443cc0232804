#include "platform/linux/entry_list.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

namespace vimbo
{

namespace
{

bool may_be_directory(unsigned char type)
{
    return type == DT_DIR || type == DT_LNK || type == DT_UNKNOWN;
}

// Asks the system where the directory does not say whether it is a file.
unsigned char type_of(DIR *directory, const dirent &found, bool is_searchable)
{
    unsigned char type = is_searchable ? found.d_type : static_cast<unsigned char>(DT_UNKNOWN);
    if (type != DT_LNK && type != DT_UNKNOWN)
        return type;
    struct stat status = {};
    if (fstatat(dirfd(directory), found.d_name, &status, 0) != 0)
        return DT_FIFO; // or anything else that is neither
    if (S_ISREG(status.st_mode))
        return DT_REG;
    return S_ISDIR(status.st_mode) ? type : static_cast<unsigned char>(DT_FIFO);
}

bool append(entry_memory &memory, unsigned char type, const char *name)
{
    const std::size_t size = std::strlen(name) + 1;
    if (memory.entry_count == entry_memory::entries ||
        entry_memory::bytes - memory.text_bytes < 1 + size)
        return false;
    memory.starts[memory.entry_count++] = static_cast<std::uint32_t>(memory.text_bytes);
    memory.texts[memory.text_bytes++] = static_cast<char>(type);
    std::memcpy(memory.texts + memory.text_bytes, name, size);
    memory.text_bytes += size;
    return true;
}

entry entry_at(const entry_memory &memory, std::uint32_t start)
{
    return {memory.texts + start + 1, static_cast<unsigned char>(memory.texts[start])};
}

bool is_before(const entry &one, const entry &other)
{
    const bool one_last = may_be_directory(one.type);
    const bool other_last = may_be_directory(other.type);
    return one_last == other_last ? std::strcmp(one.name, other.name) < 0 : other_last;
}

} // namespace

bool is_the_directory_or_its_parent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

bool read_entries(entry_memory &memory, DIR *directory, bool is_searchable, entry_list &list)
{
    list = {memory.text_bytes, memory.entry_count, memory.entry_count, 0};
    while (const dirent *found = readdir(directory)) {
        if (is_the_directory_or_its_parent(found->d_name))
            continue;
        if (!append(memory, type_of(directory, *found, is_searchable), found->d_name)) {
            drop_entries(memory, list);
            return false;
        }
    }
    list.end = memory.entry_count;
    std::sort(memory.starts + list.first, memory.starts + list.end,
              [&](std::uint32_t one, std::uint32_t other) {
                  return is_before(entry_at(memory, one), entry_at(memory, other));
              });
    return true;
}

bool next_entry(const entry_memory &memory, entry_list &list, entry &found)
{
    if (list.next == list.end)
        return false;
    found = entry_at(memory, memory.starts[list.next++]);
    return true;
}

void drop_entries(entry_memory &memory, const entry_list &list)
{
    memory.text_bytes = list.first_text;
    memory.entry_count = list.first;
}

} // namespace vimbo
