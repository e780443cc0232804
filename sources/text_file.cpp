#include "sources/text_file.hpp"

#include "platform/files.hpp"

#include <cstdio>
#include <cstring>

namespace vimbo
{

char *read_text_file(const char *path, std::span<char, source_capacity> load_buffer)
{
    std::uint64_t size = 0;
    FILE *file = open_regular_file(path, size);
    if (file == nullptr)
        return load_buffer.data();
    std::memset(load_buffer.data(), 0, load_buffer.size());
    // A failed read shows as what it did not fill.
    (void)!std::fread(load_buffer.data(), 1, load_buffer.size(), file);
    std::fclose(file);
    return load_buffer.data();
}

int write_text_file(const char *path, const char *text)
{
    return overwrite_file(path, text, link_use::followed) ? 0 : -1;
}

} // namespace vimbo
