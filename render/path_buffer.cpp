#include "render/path_buffer.hpp"

#include <iterator>

namespace vimbo
{

namespace
{

void use_path_program(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                      const path_colours &colours)
{
    glBindVertexArray(vertex_array);
    glUseProgram(program);
    glUniformMatrix4fv(glGetUniformLocation(program, "m"), 1, GL_FALSE, matrix.element);
    glUniform3fv(glGetUniformLocation(program, "klr"), static_cast<GLsizei>(std::size(colours.klr)),
                 &colours.klr[0][0]);
    glLineWidth(1.0F);
    glProvokingVertex(GL_LAST_VERTEX_CONVENTION);
}

// A software renderer takes as long to begin with a run as to draw some tens of lines.
bool are_short(const path_runs &runs)
{
    constexpr std::int64_t most_vertices = 40;
    std::int64_t vertices = 0;
    for (int i = path_run_capacity - runs.used; i < path_run_capacity; ++i)
        vertices += runs.count[i];
    return runs.used > 1 && vertices < most_vertices * runs.used && vertices <= path_line_capacity;
}

void draw_lines_of(path_runs &runs)
{
    GLsizei used = 0;
    for (int i = path_run_capacity - runs.used; i < path_run_capacity; ++i)
        for (GLint vertex = runs.first[i]; vertex < runs.first[i] + runs.count[i] - 1; ++vertex) {
            runs.line_ends[used++] = static_cast<GLuint>(vertex);
            runs.line_ends[used++] = static_cast<GLuint>(vertex + 1);
        }
    GLuint index_buffer = 0;
    glGenBuffers(1, &index_buffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, index_buffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(used) * static_cast<GLsizeiptr>(sizeof(GLuint)),
                 runs.line_ends, GL_STREAM_DRAW);
    glDrawElements(GL_LINES, used, GL_UNSIGNED_INT, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDeleteBuffers(1, &index_buffer);
}

} // namespace

void clear_picture()
{
    glClearColor(picture_background[0], picture_background[1], picture_background[2],
                 picture_background[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void draw_path_buffer(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                      std::int32_t count, const path_colours &colours)
{
    draw_path_range(program, matrix, vertex_array, 0, count, colours);
}

void draw_path_range(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                     std::int32_t first, std::int32_t count, const path_colours &colours)
{
    if (program == 0 || vertex_array == 0 || count <= 0)
        return;
    use_path_program(program, matrix, vertex_array, colours);
    glDrawArrays(GL_LINE_STRIP, first, count);
}

void add_run(path_runs &runs, std::int32_t first, std::int32_t end)
{
    const int newest = path_run_capacity - runs.used;
    // From the vertex before: the first segment starts there.
    const std::int32_t from = std::max(first - 1, 0);
    if (runs.used > 0 && runs.first[newest] == end - 1) {
        runs.count[newest] += runs.first[newest] - from;
        runs.first[newest] = from;
        return;
    }
    ++runs.used;
    runs.first[newest - 1] = from;
    runs.count[newest - 1] = end - from;
}

void draw_path_runs(GLuint program, const path_matrix &matrix, GLuint vertex_array, path_runs &runs,
                    const path_colours &colours)
{
    use_path_program(program, matrix, vertex_array, colours);
    if (are_short(runs)) {
        draw_lines_of(runs);
        return;
    }
    const int from = path_run_capacity - runs.used;
    glMultiDrawArrays(GL_LINE_STRIP, runs.first + from, runs.count + from, runs.used);
}

} // namespace vimbo
