// Pictures in memory, and as PNG files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace rig
{

struct colour {
    std::uint8_t red, green, blue;
    bool operator==(const colour &) const = default;
};

/// Pixels line by line, from the upper left corner.
struct image {
    int width, height;
    std::vector<colour> pixels;

    colour at(int x, int y) const
    {
        return pixels[index_of(x, y)];
    }
    colour &at(int x, int y)
    {
        return pixels[index_of(x, y)];
    }

private:
    std::size_t index_of(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// A picture of one colour.
image blank_image(int width, int height, colour filling);

/// Writes a PNG file.
void save_png(const image &picture, const std::string &path);

/// Reads a PNG file; a picture of no size when there is none.
image load_png(const std::string &path);

/// That part of a picture; throws when it does not lie within.
image crop(const image &whole, int x, int y, int width, int height);

} // namespace rig
