#include "tests/support/image.hpp"

#include <png.h>

#include <stdexcept>

namespace rig
{

void save_png(const image &picture, const std::string &path)
{
    png_image file = {};
    file.version = PNG_IMAGE_VERSION;
    file.width = static_cast<png_uint_32>(picture.width);
    file.height = static_cast<png_uint_32>(picture.height);
    file.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&file, path.c_str(), 0, picture.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write " + path);
}

image load_png(const std::string &path)
{
    png_image file = {};
    file.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&file, path.c_str()) == 0)
        return {};
    file.format = PNG_FORMAT_RGB;
    image picture = blank_image(static_cast<int>(file.width), static_cast<int>(file.height), {});
    if (png_image_finish_read(&file, nullptr, picture.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot read " + path);
    return picture;
}

} // namespace rig
