// Any changes to a font's file: what is taken for whole can be baked.
#include "ui/font_file.hpp"
#include "ui/font.hpp"
#include "ui/nuklear.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace
{

const std::string &whole_font()
{
    static const std::string bytes = [] {
        std::ifstream file(VIMBO_FONT, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }();
    return bytes;
}

// The font with the input's changes: each an offset of three bytes and a byte to put
// there. Of an input of an odd length, the first two cut the file.
std::string changed_font(const unsigned char *data, std::size_t size)
{
    std::string bytes = whole_font();
    if (size % 2 == 1 && size > 2) {
        bytes.resize(bytes.size() * (std::size_t{data[0]} << 8 | data[1]) / 65536);
        data += 3;
        size -= 3;
    }
    for (std::size_t i = 0; i + 3 < size && !bytes.empty(); i += 4) {
        const std::size_t offset =
            std::size_t{data[i]} << 16 | std::size_t{data[i + 1]} << 8 | data[i + 2];
        bytes[offset % bytes.size()] = static_cast<char>(data[i + 3]);
    }
    return bytes;
}

void bake(const char *path)
{
    nk_font_atlas atlas = {};
    nk_font_atlas_init_default(&atlas);
    nk_font_atlas_begin(&atlas);
    if (vimbo::add_font(&atlas, path, vimbo::font_height) == nullptr)
        std::abort();
    int width = 0;
    int height = 0;
    if (nk_font_atlas_bake(&atlas, &width, &height, NK_FONT_ATLAS_ALPHA8) == nullptr)
        std::abort();
    nk_font_atlas_end(&atlas, nk_handle_id(0), nullptr);
    nk_font_atlas_clear(&atlas);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static const int file = memfd_create("font", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    const std::string bytes = changed_font(data, size);
    if (file < 0 || ftruncate(file, 0) != 0 ||
        pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    if (vimbo::is_whole_font(path.c_str()))
        bake(path.c_str());
    return 0;
}
