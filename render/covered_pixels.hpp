// Which pixels of a picture are covered, and whether a part of a path could still
// be seen beside them.
//
// A line covers a pixel when it leaves the diamond around the pixel's centre, so a
// box of lines can touch only those whose diamond it meets. Of the pixel beside
// the end of many lines, for example, most miss the diamond:
//
//       +-------+-------+
//       |   /\  |   /\  |
//     ===>/    \| /    \|      the box of lines ===> ends in the left diamond and
//       | \    /| \    /|      touches that pixel alone
//       |   \/  |   \/  |
//       +-------+-------+
#pragma once

#include <cstdint>
#include <span>

namespace vimbo
{

/// A box in pixels of the picture: the first one is 0 to 1.
struct pixel_box {
    double left;
    double bottom;
    double right;
    double top;
};

/// Whole pixels, first and last one inside. Empty where the last is before the
/// first.
struct pixel_range {
    int left;
    int bottom;
    int right;
    int top;
};

inline constexpr int covered_word_capacity = 1 << 17;

/// A bit for each pixel: as they were seen last, and as they were before that.
/// 2 MiB. Main thread only.
struct covered_pixels {
    std::uint64_t now[covered_word_capacity];
    std::uint64_t before[covered_word_capacity];
    int width;
    int height;
    int row_words;
    pixel_range last_seen; // where the two differ at most
};

/// True when there are not too many pixels.
bool has_room(int width, int height);

/// No pixel is covered from here on; there must be room for them.
void clear_covered(covered_pixels &covered, int width, int height);

/// All pixels that lines within the box may cover, and some more.
pixel_range range_of(const covered_pixels &covered, const pixel_box &box);

/// True when every pixel that lines within the box may cover was covered; `range` is
/// range_of it.
bool is_hidden(const covered_pixels &covered, const pixel_box &box, const pixel_range &range);
bool was_hidden(const covered_pixels &covered, const pixel_box &box, const pixel_range &range);

/// True when the pixels of a row, from `first` to `last`, are covered.
bool are_covered(const covered_pixels &covered, int row, int first, int last);

/// Notes pixels of a row, from `first` to `last`, as covered now and before.
void cover_row(covered_pixels &covered, int row, int first, int last);

/// Begins a look at these pixels: what was seen becomes what was before.
void begin_look(covered_pixels &covered, const pixel_range &range);

/// Notes the depths of a row within that range, from column `first` on: what is
/// nearer than `far` is covered.
void see_row(covered_pixels &covered, int row, int first, std::span<const std::uint32_t> depths,
             std::uint32_t far);

} // namespace vimbo
