#include "toolchain/mosaic_writer.hpp"

#include "mosaic/mosaic_file.hpp"
#include "platform/files.hpp"
#include "toolchain/stop_watch.hpp"
#include "toolchain/system.hpp"

#include <cerrno>
#include <cstring>

namespace toolchain
{

mosaic_writer::mosaic_writer(const std::string &mosaic_path)
    : path(mosaic_path), temporary(mosaic_path), file(create_file_beside(temporary))
{
    if (file == nullptr) {
        note_failure("cannot write beside ");
        return;
    }
    set_unfinished_file(temporary);
    // For its place only; that the disk is full shows no sooner than when it is written again.
    write_header();
}

mosaic_writer::~mosaic_writer()
{
    if (file != nullptr)
        std::fclose(file);
    if (!temporary.empty())
        vimbo::remove_file(temporary.c_str());
    set_unfinished_file({});
}

void mosaic_writer::note_failure(const char *verb)
{
    if (failure.empty())
        failure = verb + path + ": " + std::strerror(errno);
}

bool mosaic_writer::write_header()
{
    unsigned char header[vimbo::mosaic_header_size] = {};
    const std::uint32_t element_size = sizeof(vimbo::path_vertex);
    std::memcpy(&header[vimbo::element_size_offset], &element_size, sizeof element_size);
    std::memcpy(&header[vimbo::element_count_offset], &written, sizeof written);
    return std::fwrite(header, sizeof header, 1, file) == 1;
}

void mosaic_writer::append(std::span<const vimbo::path_vertex> moves)
{
    if (!failure.empty())
        return;
    if (std::fwrite(moves.data(), sizeof(vimbo::path_vertex), moves.size(), file) != moves.size())
        note_failure("cannot write ");
    written += moves.size();
}

std::string mosaic_writer::finish()
{
    if (!failure.empty())
        return failure;
    // Only now their number is known.
    const bool whole = std::fseek(file, 0, SEEK_SET) == 0 && write_header();
    // A full disk may show only now.
    const bool closed = std::fclose(file) == 0;
    file = nullptr;
    if (!whole || !closed || !replace_file(temporary, path))
        note_failure("cannot write ");
    else
        temporary.clear();
    return failure;
}

} // namespace toolchain
