#include "ui/font_file.hpp"

#include "platform/files.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace vimbo
{

namespace
{

// Nuklear counts a file's bytes as int.
constexpr std::uint64_t largest_file = INT32_MAX;

struct needed_table {
    char tag[5];
    std::uint32_t least_length;
};

// What Nuklear reads. The outlines of "OTTO" files lie elsewhere, so it cannot
// bake those.
constexpr needed_table needed_tables[] = {
    {"cmap", 4}, {"glyf", 1}, {"head", 54}, {"hhea", 36}, {"hmtx", 4}, {"loca", 2}, {"maxp", 6},
};
constexpr std::size_t needed_count = std::size(needed_tables);
constexpr std::size_t cmap_index = 0;
constexpr std::size_t head_index = 2;
constexpr std::size_t loca_index = 5;
constexpr std::size_t maxp_index = 6;

struct font_table {
    char tag[4];
    std::uint32_t checksum, offset, length; // no length: not found
};

struct font_file {
    FILE *file;
    std::uint64_t size;
    std::array<font_table, needed_count> tables; // as needed_tables has them
};

// Big-endian, as all of a font file.
std::uint32_t number_at(const unsigned char *bytes, int size)
{
    std::uint32_t number = 0;
    for (int i = 0; i < size; ++i)
        number = number << 8 | bytes[i];
    return number;
}

bool read_at(const font_file &font, std::uint64_t offset, unsigned char *out, std::size_t size)
{
    return offset + size <= font.size &&
           std::fseek(font.file, static_cast<long>(offset), SEEK_SET) == 0 &&
           std::fread(out, size, 1, font.file) == 1;
}

bool has_true_type_tag(const unsigned char *header)
{
    constexpr unsigned char version_1[] = {0, 1, 0, 0};
    return std::memcmp(header, version_1, sizeof version_1) == 0 ||
           std::memcmp(header, "true", 4) == 0;
}

// Of several with the same tag Nuklear takes the first one, too.
void note_table(font_file &font, const font_table &table)
{
    for (std::size_t i = 0; i < needed_count; ++i)
        if (std::memcmp(table.tag, needed_tables[i].tag, sizeof table.tag) == 0 &&
            font.tables[i].length == 0)
            font.tables[i] = table;
}

// The table directory. False when it, or one of them, is not in the file.
bool read_directory(font_file &font)
{
    constexpr std::uint64_t header_size = 12;
    constexpr std::uint64_t record_size = 16;
    unsigned char header[header_size];
    if (!read_at(font, 0, header, sizeof header) || !has_true_type_tag(header))
        return false;
    const std::uint32_t count = number_at(header + 4, 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        unsigned char record[record_size];
        if (!read_at(font, header_size + i * record_size, record, sizeof record))
            return false;
        font_table table = {
            {}, number_at(record + 4, 4), number_at(record + 8, 4), number_at(record + 12, 4)};
        std::memcpy(table.tag, record, sizeof table.tag);
        if (std::uint64_t{table.offset} + table.length > font.size)
            return false;
        note_table(font, table);
    }
    return true;
}

// The sum of the table's words, the last one filled up with zeros.
bool compute_checksum(const font_file &font, const font_table &table, std::uint32_t &checksum)
{
    constexpr std::uint32_t block_size = 4096;
    unsigned char block[block_size];
    checksum = 0;
    for (std::uint32_t at = 0; at < table.length; at += block_size) {
        const std::uint32_t size = std::min(table.length - at, block_size);
        std::memset(block, 0, sizeof block);
        if (!read_at(font, std::uint64_t{table.offset} + at, block, size))
            return false;
        for (std::uint32_t word = 0; word < size; word += 4)
            checksum += number_at(block + word, 4);
    }
    return true;
}

bool is_intact(const font_file &font, std::size_t index)
{
    const font_table &table = font.tables[index];
    std::uint32_t checksum = 0;
    // Some old fonts have a wrong checksum of their header, whose fields are looked
    // at below.
    return table.length >= needed_tables[index].least_length &&
           (index == head_index ||
            (compute_checksum(font, table, checksum) && checksum == table.checksum));
}

// What is read of the header: the units of an em, and whether the places of the
// outlines take two bytes or four, which has to fit their number.
bool has_sound_header(const font_file &font)
{
    constexpr std::uint32_t magic_number = 0x5F0F3CF5;
    unsigned char head[54];
    unsigned char maxp[6];
    if (!read_at(font, font.tables[head_index].offset, head, sizeof head) ||
        !read_at(font, font.tables[maxp_index].offset, maxp, sizeof maxp))
        return false;
    const std::uint32_t places = number_at(maxp + 4, 2) + 1;
    const std::uint32_t format = number_at(head + 50, 2);
    const std::uint32_t length = places * (format == 0 ? 2 : 4);
    constexpr std::uint32_t filling = 3; // to a word's end
    const std::uint32_t found = font.tables[loca_index].length;
    return number_at(head + 12, 4) == magic_number && number_at(head + 18, 2) > 0 && format <= 1 &&
           found >= length && found <= length + filling;
}

bool is_unicode(std::uint32_t platform, std::uint32_t encoding)
{
    constexpr std::uint32_t any_unicode = 0;
    constexpr std::uint32_t microsoft = 3;
    return platform == any_unicode || (platform == microsoft && (encoding == 1 || encoding == 10));
}

// Nuklear goes by the last Unicode map, and knows these formats of it.
bool has_known_map(const font_file &font)
{
    const font_table &cmap = font.tables[cmap_index];
    unsigned char header[4];
    if (!read_at(font, cmap.offset, header, sizeof header))
        return false;
    std::uint64_t map = 0;
    for (std::uint32_t i = 0; i < number_at(header + 2, 2); ++i) {
        unsigned char record[8];
        if (!read_at(font, cmap.offset + sizeof header + i * sizeof record, record, sizeof record))
            return false;
        if (is_unicode(number_at(record, 2), number_at(record + 2, 2)))
            map = std::uint64_t{cmap.offset} + number_at(record + 4, 4);
    }
    unsigned char format[2];
    if (map == 0 || !read_at(font, map, format, sizeof format))
        return false;
    constexpr std::uint32_t known[] = {0, 4, 6, 12, 13};
    return std::ranges::find(known, number_at(format, 2)) != std::end(known);
}

} // namespace

bool is_whole_font(const char *path)
{
    font_file font = {};
    font.file = open_regular_file(path, font.size);
    if (font.file == nullptr)
        return false;
    bool whole = font.size <= largest_file && read_directory(font);
    for (std::size_t i = 0; whole && i < needed_count; ++i)
        whole = is_intact(font, i);
    whole = whole && has_sound_header(font) && has_known_map(font);
    std::fclose(font.file);
    return whole;
}

} // namespace vimbo
