// Paths on the GPU and how they are drawn.
#pragma once

#include <GL/glew.h>

#include <cstdint>

namespace vimbo
{

/// Names and vertex count of a path on the GPU. All zero: nothing.
struct path_buffer {
    GLuint vertex_array;
    GLuint buffer;
    std::int32_t vertex_count;
};

/// Red, green and blue, 0 to 1, of the segments that end at a vertex with flag
/// 0, then of those with flag 1.
struct path_colours {
    GLfloat klr[2][3];
};

inline constexpr path_colours mosaic_colours = {{{0.5F, 0.65F, 0.85F}, {1.0F, 1.0F, 1.0F}}};
inline constexpr path_colours outline_colours = {{{0.85F, 0.65F, 0.45F}, {1.0F, 1.0F, 1.0F}}};

inline constexpr GLfloat picture_background[] = {0.432F, 0.557F, 0.745F, 0.0F};

/// Fills what the scissor leaves free with the picture's background.
void clear_picture();

/// 16 floats in column order.
struct path_matrix {
    GLfloat element[16];
};

/// Draws the first `count` vertices as one line strip, each segment in the
/// colour that its end vertex's flag selects. Nothing is drawn without a
/// program, a vertex array or vertices.
void draw_path_buffer(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                      std::int32_t count, const path_colours &colours);

/// The same from vertex `first` on. Two ranges that share a vertex, one after the
/// other, give what one draw of both gives.
void draw_path_range(GLuint program, const path_matrix &matrix, GLuint vertex_array,
                     std::int32_t first, std::int32_t count, const path_colours &colours);

inline constexpr int path_run_capacity = 8192;
inline constexpr std::int32_t path_line_capacity = 1 << 15;

/// Ranges of a path's vertices, the last one first in the path: they are filled
/// from the end of the path to its start. All zero: none.
struct path_runs {
    GLint first[path_run_capacity];
    GLsizei count[path_run_capacity];
    int used; // the last so many of the arrays

    /// Many short ones are drawn as single lines, two ends each, at once.
    GLuint line_ends[2 * path_line_capacity];
};

/// Adds the segments that end at these vertices: they lie before all that were added, and make
/// the newest run longer where they touch it. There must be room for one run more.
void add_run(path_runs &runs, std::int32_t first, std::int32_t end);

/// Draws the runs in the path's order, with a program and a vertex array that are there.
void draw_path_runs(GLuint program, const path_matrix &matrix, GLuint vertex_array, path_runs &runs,
                    const path_colours &colours);

} // namespace vimbo
