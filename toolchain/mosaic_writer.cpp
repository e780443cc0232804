#include "toolchain/mosaic_writer.hpp"

#include "mosaic/mosaic_file.hpp"
#include "toolchain/stop_watch.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace toolchain
{

namespace
{

bool write_all(FILE *file, std::span<const vimbo::path_vertex> moves)
{
    unsigned char header[vimbo::mosaic_header_size] = {};
    const std::uint32_t element_size = sizeof(vimbo::path_vertex);
    const std::uint64_t element_count = moves.size();
    std::memcpy(&header[vimbo::element_size_offset], &element_size, sizeof element_size);
    std::memcpy(&header[vimbo::element_count_offset], &element_count, sizeof element_count);
    return std::fwrite(header, sizeof header, 1, file) == 1 &&
           std::fwrite(moves.data(), element_size, moves.size(), file) == moves.size();
}

// mkstemp makes files for their owner alone.
void allow_as_the_umask_does(int file)
{
    constexpr mode_t readable_and_writable = 0666;
    const mode_t mask = umask(0);
    umask(mask);
    (void)!fchmod(file, readable_and_writable & ~mask);
}

} // namespace

std::string write_mosaic(const std::string &path, std::span<const vimbo::path_vertex> moves)
{
    std::string temporary = path + ".XXXXXX";
    const int descriptor = mkstemp(temporary.data());
    if (descriptor < 0)
        return "cannot write beside " + path + ": " + std::strerror(errno);
    set_unfinished_file(temporary);
    allow_as_the_umask_does(descriptor);

    FILE *file = fdopen(descriptor, "wb");
    const bool written = file != nullptr && write_all(file, moves);
    // A full disk may show only now.
    const bool closed = (file != nullptr ? std::fclose(file) : close(descriptor)) == 0;
    std::string fault;
    if (!written || !closed || std::rename(temporary.c_str(), path.c_str()) != 0) {
        fault = "cannot write " + path + ": " + std::strerror(errno);
        unlink(temporary.c_str());
    }
    set_unfinished_file({});
    return fault;
}

} // namespace toolchain
