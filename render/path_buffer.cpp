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

} // namespace

void clear_picture()
{
    glClearColor(0.432F, 0.557F, 0.745F, 0.0F);
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

void draw_path_runs(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                    const path_runs &runs, const path_colours &colours)
{
    use_path_program(program, matrix, vertex_array, colours);
    const int from = path_run_capacity - runs.used;
    glMultiDrawArrays(GL_LINE_STRIP, runs.first + from, runs.count + from, runs.used);
}

} // namespace vimbo
