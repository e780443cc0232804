#include "tests/support/golden.hpp"

#include <algorithm>
#include <cstdlib>

namespace rig
{

namespace
{

constexpr int block_side = 3;
constexpr int block_pixels = block_side * block_side;
// Beyond what rounding a blended colour makes of it.
constexpr int least_change = 3;

// How much one channel of a block has become brighter.
class channel_change
{
public:
    void add(int before, int after)
    {
        const int change = after - before;
        least = std::min(least, change);
        most = std::max(most, change);
        sum += change;
    }
    bool seen(int most_mean_change) const
    {
        return least > least_change || most < -least_change ||
               std::abs(sum) > most_mean_change * block_pixels;
    }

private:
    int least = 255;
    int most = -255;
    int sum = 0;
};

bool alike(colour one, colour other)
{
    return std::abs(one.red - other.red) <= least_change &&
           std::abs(one.green - other.green) <= least_change &&
           std::abs(one.blue - other.blue) <= least_change;
}

// Of this pixel's colour there is none near its place in the other picture.
bool is_lost(const image &picture, const image &other, int x, int y)
{
    constexpr int reach = 2;
    const colour wanted = picture.at(x, y);
    for (int near_y = std::max(0, y - reach); near_y <= std::min(other.height - 1, y + reach);
         ++near_y)
        for (int near_x = std::max(0, x - reach); near_x <= std::min(other.width - 1, x + reach);
             ++near_x)
            if (alike(other.at(near_x, near_y), wanted))
                return false;
    return true;
}

// One for each pixel whose colour the other picture does not have near it.
std::vector<bool> lost_colours(const image &picture, const image &other)
{
    std::vector<bool> lost;
    lost.reserve(picture.pixels.size());
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            lost.push_back(is_lost(picture, other, x, y));
    return lost;
}

int lost_in_block(const std::vector<bool> &lost, int width, const point &block)
{
    int count = 0;
    for (int y = block.y; y < block.y + block_side; ++y)
        for (int x = block.x; x < block.x + block_side; ++x)
            count += lost[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                          static_cast<std::size_t>(x)]
                         ? 1
                         : 0;
    return count;
}

bool differs(const image &before, const image &after, const point &block, int most_mean_change)
{
    channel_change red;
    channel_change green;
    channel_change blue;
    for (int y = block.y; y < block.y + block_side; ++y)
        for (int x = block.x; x < block.x + block_side; ++x) {
            const colour was = before.at(x, y);
            const colour is = after.at(x, y);
            red.add(was.red, is.red);
            green.add(was.green, is.green);
            blue.add(was.blue, is.blue);
        }
    return red.seen(most_mean_change) || green.seen(most_mean_change) ||
           blue.seen(most_mean_change);
}

void put(image &into, const image &picture, int left)
{
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            into.at(left + x, y) = picture.at(x, y);
}

// The picture in pale grey, the blocks in red over it.
image marked(const image &picture, const picture_difference &difference)
{
    image result = picture;
    for (colour &shade : result.pixels) {
        const int grey = (shade.red + shade.green + shade.blue) / 3;
        const auto pale = static_cast<std::uint8_t>(192 + grey / 4);
        shade = {pale, pale, pale};
    }
    for (const point &block : difference.blocks)
        for (int y = block.y; y < block.y + block_side; ++y)
            for (int x = block.x; x < block.x + block_side; ++x)
                result.at(x, y) = {220, 0, 0};
    return result;
}

} // namespace

picture_difference compare(const image &before, const image &after, int most_mean_change)
{
    const std::vector<bool> gone = lost_colours(before, after);
    const std::vector<bool> come = lost_colours(after, before);
    picture_difference difference;
    for (int y = 0; y + block_side <= before.height; ++y)
        for (int x = 0; x + block_side <= before.width; ++x)
            if (differs(before, after, {x, y}, most_mean_change) ||
                lost_in_block(gone, before.width, {x, y}) >= block_side ||
                lost_in_block(come, before.width, {x, y}) >= block_side)
                difference.blocks.push_back({x, y});
    return difference;
}

image side_by_side(const image &before, const image &after, const picture_difference &difference)
{
    constexpr int gap = 8;
    const int width = std::max(before.width, after.width);
    image all =
        blank_image(3 * width + 2 * gap, std::max(before.height, after.height), {255, 255, 255});
    put(all, before, 0);
    put(all, after, width + gap);
    put(all, marked(after, difference), 2 * (width + gap));
    return all;
}

} // namespace rig
