#include "mosaic/load_mosaic.hpp"

#include "mosaic/mosaic_file.hpp"
#include "mosaic/path_attributes.hpp"
#include "mosaic/path_vertex.hpp"
#include "platform/files.hpp"

#include <cstdio>
#include <cstring>

namespace vimbo
{

namespace
{

// Reads header and measures. False when they, or the file behind them, fall short.
bool read_header(FILE *file, std::uint64_t file_size, mosaic_body &body)
{
    unsigned char header[mosaic_header_size] = {};
    return std::fread(header, sizeof header, 1, file) == 1 && file_size >= sizeof header &&
           read_mosaic_header(header, file_size - sizeof header, body);
}

// Fills the bound array buffer: the tray's centre, then the file's body. False
// when the driver grants no memory or the file has become shorter meanwhile.
bool fill_vertex_buffer(FILE *file, const mosaic_body &body)
{
    constexpr path_vertex centre = {0, 0};
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(body.byte_count + sizeof centre), nullptr,
                 GL_STATIC_DRAW);
    set_path_vertex_attributes();
    auto *mapped = static_cast<unsigned char *>(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY));
    if (mapped == nullptr)
        return false;
    std::memcpy(mapped, &centre, sizeof centre);
    const bool whole = std::fread(mapped + sizeof centre, body.element_size, body.element_count,
                                  file) == body.element_count;
    glUnmapBuffer(GL_ARRAY_BUFFER);
    return whole;
}

void delete_mosaic_objects(mosaic_state &mosaic)
{
    glDeleteVertexArrays(1, &mosaic.mosaic_vao);
    glDeleteBuffers(1, &mosaic.mosaic_vbo);
    mosaic.mosaic_vao = 0;
    mosaic.mosaic_vbo = 0;
    mosaic.mosaic_vertex_count = 0;
}

} // namespace

void load_mosaic(mosaic_state &mosaic)
{
    delete_mosaic_objects(mosaic);
    ++mosaic.mosaic_generation;

    std::uint64_t file_size = 0;
    FILE *file = open_regular_file(mosaic.mosaic_path, file_size);
    if (file == nullptr)
        return;
    mosaic_body body = {};
    if (read_header(file, file_size, body)) {
        glGenVertexArrays(1, &mosaic.mosaic_vao);
        glBindVertexArray(mosaic.mosaic_vao);
        glGenBuffers(1, &mosaic.mosaic_vbo);
        glBindBuffer(GL_ARRAY_BUFFER, mosaic.mosaic_vbo);
        if (fill_vertex_buffer(file, body))
            mosaic.mosaic_vertex_count = body.vertex_count;
        glBindVertexArray(0);
    }
    std::fclose(file);
    if (mosaic.mosaic_vertex_count == 0)
        delete_mosaic_objects(mosaic);
}

} // namespace vimbo
