#pragma once

#include "mosaic/path_vertex.hpp"

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

namespace toolchain
{

/// Writes a mosaic file beside its place and renames it into place, so that no
/// reader ever sees half of one. Until then what stood there is untouched.
class mosaic_writer
{
public:
    explicit mosaic_writer(const std::string &mosaic_path);
    ~mosaic_writer(); // removes the file that was not finished
    mosaic_writer(const mosaic_writer &) = delete;
    mosaic_writer &operator=(const mosaic_writer &) = delete;

    /// What failed so far, or an empty text.
    const std::string &fault() const
    {
        return failure;
    }

    /// Writes the moves that come next, unless something has failed.
    void append(std::span<const vimbo::path_vertex> moves);

    /// Puts the file into its place. Returns what failed, or an empty text.
    std::string finish();

private:
    void note_failure(const char *verb);
    bool write_header();

    std::string path;
    std::string temporary; // the unfinished file; empty when there is none
    FILE *file;
    std::string failure;
    std::uint64_t written = 0; // moves
};

} // namespace toolchain
