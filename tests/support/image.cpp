#include "tests/support/image.hpp"

#include <stdexcept>

namespace rig
{

image blank_image(int width, int height, colour filling)
{
    return {width, height,
            std::vector<colour>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                filling)};
}

image crop(const image &whole, int x, int y, int width, int height)
{
    if (x < 0 || y < 0 || x + width > whole.width || y + height > whole.height)
        throw std::runtime_error("the part lies outside of the picture");
    image part = blank_image(width, height, {});
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            part.at(column, row) = whole.at(x + column, y + row);
    return part;
}

} // namespace rig
