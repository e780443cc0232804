#include "tests/support/scratch.hpp"

#include "mosaic/mosaic_file.hpp"

#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

namespace rig
{

scratch_directory::scratch_directory()
{
    std::random_device random;
    const std::filesystem::path common = std::filesystem::temp_directory_path();
    do
        root = (common / ("vimbo-test-" + std::to_string(random()))).generic_string();
    while (!std::filesystem::create_directory(root));
}

scratch_directory::~scratch_directory()
{
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

std::filesystem::path utf8_path(std::string_view text)
{
    return std::u8string(text.begin(), text.end());
}

void write_file(const std::filesystem::path &path, std::string_view content)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string read_file(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void write_script(const std::filesystem::path &path, std::string_view body)
{
    write_file(path, "#!/bin/sh\n" + std::string(body));
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::string mosaic_bytes(std::uint32_t element_size, std::uint64_t element_count,
                         std::string_view body)
{
    std::string bytes(vimbo::mosaic_header_size, '\0');
    std::memcpy(&bytes[vimbo::element_size_offset], &element_size, sizeof element_size);
    std::memcpy(&bytes[vimbo::element_count_offset], &element_count, sizeof element_count);
    return bytes.append(body);
}

std::string mosaic_bytes(const std::vector<vimbo::path_vertex> &points)
{
    const auto *bytes = reinterpret_cast<const char *>(points.data());
    return mosaic_bytes(sizeof(vimbo::path_vertex), points.size(),
                        {bytes, points.size() * sizeof(vimbo::path_vertex)});
}

} // namespace rig
