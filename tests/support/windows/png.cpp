// PNG files without compression: the library that could is not built for this system.
#include "tests/support/image.hpp"

#include <array>
#include <fstream>
#include <stdexcept>

namespace rig
{

namespace
{

std::string big_endian(std::uint32_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift);
    return bytes;
}

std::uint32_t cyclic_sum(const std::string &bytes)
{
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::uint32_t sum = ~std::uint32_t{0};
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? polynomial : 0);
    }
    return ~sum;
}

// One of the file's parts: its length, its name and content, and their sum.
std::string part(const std::string &name, const std::string &content)
{
    return big_endian(static_cast<std::uint32_t>(content.size())) + name + content +
           big_endian(cyclic_sum(name + content));
}

// As a stream that holds its bytes as they are, in blocks.
std::string stored(const std::string &bytes)
{
    constexpr std::size_t longest = 65535;
    std::string stream = "\x78\x01";
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (std::size_t at = 0; at < bytes.size(); at += longest) {
        const std::string block = bytes.substr(at, longest);
        const auto length = static_cast<std::uint32_t>(block.size());
        stream += at + longest >= bytes.size() ? '\1' : '\0';
        for (const std::uint32_t word : {length, ~length})
            for (const int shift : {0, 8})
                stream += static_cast<char>(word >> shift);
        stream += block;
        for (const char byte : block) {
            low = (low + static_cast<unsigned char>(byte)) % 65521;
            high = (high + low) % 65521;
        }
    }
    return stream + big_endian(high << 16 | low);
}

} // namespace

void save_png(const image &picture, const std::string &path)
{
    constexpr std::array<char, 5> true_colours = {8, 2, 0, 0, 0};
    std::string rows;
    for (int y = 0; y < picture.height; ++y) {
        rows += '\0'; // no filter
        for (int x = 0; x < picture.width; ++x)
            for (const std::uint8_t value :
                 {picture.at(x, y).red, picture.at(x, y).green, picture.at(x, y).blue})
                rows += static_cast<char>(value);
    }
    std::ofstream file(path, std::ios::binary);
    file << "\x89PNG\r\n\x1a\n"
         << part("IHDR", big_endian(static_cast<std::uint32_t>(picture.width)) +
                             big_endian(static_cast<std::uint32_t>(picture.height)) +
                             std::string(true_colours.begin(), true_colours.end()))
         << part("IDAT", stored(rows)) << part("IEND", "");
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace rig
