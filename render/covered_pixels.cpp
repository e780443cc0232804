#include "render/covered_pixels.hpp"

#include <algorithm>
#include <cstddef>

namespace vimbo
{

namespace
{

constexpr int word_bits = 64;
constexpr double reach = 0.5; // from a pixel's centre to its diamond's corners

// The first of `size` pixels whose centre is not before this position.
int first_pixel(double position, int size)
{
    const double from = std::clamp(position - 0.5, 0.0, static_cast<double>(size));
    const int whole = static_cast<int>(from);
    return whole < from ? whole + 1 : whole;
}

// The last one whose centre is not behind it; -1 where there is none.
int last_pixel(double position, int size)
{
    const double to = std::clamp(position - 0.5, -1.0, static_cast<double>(size - 1));
    return static_cast<int>(to + 1) - 1;
}

bool is_number(const pixel_box &box)
{
    return box.left <= box.right && box.bottom <= box.top;
}

bool is_empty(const pixel_range &range)
{
    return range.right < range.left || range.top < range.bottom;
}

std::uint64_t bits_from(int first)
{
    return ~std::uint64_t{0} << (first % word_bits);
}

std::uint64_t bits_to(int last)
{
    return ~std::uint64_t{0} >> (word_bits - 1 - last % word_bits);
}

bool are_set(const std::uint64_t *row, int first, int last)
{
    const int first_word = first / word_bits;
    const int last_word = last / word_bits;
    std::uint64_t wanted = bits_from(first);
    for (int word = first_word; word < last_word; ++word) {
        if ((row[word] & wanted) != wanted)
            return false;
        wanted = ~std::uint64_t{0};
    }
    wanted &= bits_to(last);
    return (row[last_word] & wanted) == wanted;
}

std::int64_t row_words_of(int width)
{
    return (std::int64_t{width} + word_bits - 1) / word_bits;
}

std::size_t row_at(const covered_pixels &covered, int row)
{
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(covered.row_words);
}

bool is_covered(const covered_pixels &covered, const std::uint64_t *bits, const pixel_box &box,
                const pixel_range &range)
{
    for (int row = range.bottom; row <= range.top; ++row) {
        int first = range.left;
        int last = range.right;
        const double centre = row + 0.5;
        const double beside = std::max(box.bottom - centre, centre - box.top);
        // Above and below the box the diamonds that it meets become narrower.
        if (beside > 0) {
            first = first_pixel(box.left - (reach - beside), covered.width);
            last = last_pixel(box.right + (reach - beside), covered.width);
        }
        if (first <= last && !are_set(bits + row_at(covered, row), first, last))
            return false;
    }
    return true;
}

} // namespace

bool has_room(int width, int height)
{
    return width > 0 && height > 0 && row_words_of(width) * height <= covered_word_capacity;
}

void clear_covered(covered_pixels &covered, int width, int height)
{
    covered.width = width;
    covered.height = height;
    covered.row_words = static_cast<int>(row_words_of(width));
    std::fill_n(covered.now, row_at(covered, height), 0);
    std::fill_n(covered.before, row_at(covered, height), 0);
    covered.last_seen = {0, 0, -1, -1};
}

pixel_range range_of(const covered_pixels &covered, const pixel_box &box)
{
    // Not so for NaN, either.
    if (!is_number(box))
        return {0, 0, covered.width - 1, covered.height - 1};
    const pixel_range range = {
        first_pixel(box.left - reach, covered.width),
        first_pixel(box.bottom - reach, covered.height),
        last_pixel(box.right + reach, covered.width),
        last_pixel(box.top + reach, covered.height),
    };
    return is_empty(range) ? pixel_range{0, 0, -1, -1} : range;
}

bool is_hidden(const covered_pixels &covered, const pixel_box &box, const pixel_range &range)
{
    return is_covered(covered, covered.now, box, range);
}

bool was_hidden(const covered_pixels &covered, const pixel_box &box, const pixel_range &range)
{
    return is_covered(covered, covered.before, box, range);
}

bool are_covered(const covered_pixels &covered, int row, int first, int last)
{
    return are_set(covered.now + row_at(covered, row), first, last);
}

void cover_row(covered_pixels &covered, int row, int first, int last)
{
    const std::size_t at = row_at(covered, row);
    const int first_word = first / word_bits;
    const int last_word = last / word_bits;
    for (int word = first_word; word <= last_word; ++word) {
        std::uint64_t bits = ~std::uint64_t{0};
        if (word == first_word)
            bits &= bits_from(first);
        if (word == last_word)
            bits &= bits_to(last);
        covered.now[at + static_cast<std::size_t>(word)] |= bits;
        covered.before[at + static_cast<std::size_t>(word)] |= bits;
    }
}

void begin_look(covered_pixels &covered, const pixel_range &range)
{
    const pixel_range &seen = covered.last_seen;
    for (int row = seen.bottom; row <= seen.top; ++row) {
        const std::size_t at = row_at(covered, row);
        std::copy_n(covered.now + at, covered.row_words, covered.before + at);
    }
    covered.last_seen = range;
}

void see_row(covered_pixels &covered, int row, int first, std::span<const std::uint32_t> depths,
             std::uint32_t far)
{
    std::uint64_t *words = covered.now + row_at(covered, row);
    int column = first;
    for (const std::uint32_t depth : depths) {
        const auto nearer = static_cast<std::uint64_t>(depth < far ? 1 : 0);
        words[column / word_bits] |= nearer << (column % word_bits);
        ++column;
    }
}

} // namespace vimbo
