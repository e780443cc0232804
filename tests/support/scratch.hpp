// A directory of its own for each test, and the small files that tests need.
#pragma once

#include "mosaic/path_vertex.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace rig
{

/// Made empty, removed with all it holds. Its paths have '/' on every system.
class scratch_directory
{
public:
    scratch_directory();
    ~scratch_directory();
    scratch_directory(const scratch_directory &) = delete;
    scratch_directory &operator=(const scratch_directory &) = delete;

    const std::filesystem::path &path() const
    {
        return root;
    }
    std::string file(std::string_view name) const
    {
        return root.generic_string() + '/' + std::string(name);
    }

private:
    std::filesystem::path root;
};

/// A path from its UTF-8, which not every system takes a narrow text for.
std::filesystem::path utf8_path(std::string_view text);

void write_file(const std::filesystem::path &path, std::string_view content);
std::string read_file(const std::filesystem::path &path);

/// An executable shell script.
void write_script(const std::filesystem::path &path, std::string_view body);

/// A mosaic file's bytes: the header, then the body as it stands.
std::string mosaic_bytes(std::uint32_t element_size, std::uint64_t element_count,
                         std::string_view body);
std::string mosaic_bytes(const std::vector<vimbo::path_vertex> &points);

} // namespace rig
