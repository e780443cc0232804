#include "render/path_program.hpp"

#include "mosaic/path_attributes.hpp"

#include <cstdio>

namespace vimbo
{

namespace
{

constexpr char path_vertex_shader[] = "#version 330\n"
                                      "in vec4 vp;\n"
                                      "in int vn;\n"
                                      "\n"
                                      "uniform mat4 m;\n"
                                      "\n"
                                      "flat out lowp int l;\n"
                                      "\n"
                                      "void main()\n"
                                      "{\n"
                                      "\tgl_Position = m * vp;\n"
                                      "\tl = vn & 1;\n"
                                      "}\n";

constexpr char path_fragment_shader[] = "#version 330\n"
                                        "\n"
                                        "flat in lowp int l;\n"
                                        "uniform vec3 klr[2];\n"
                                        "out vec3 clr;\n"
                                        "\n"
                                        "void main() {\n"
                                        "\tclr = klr[l];\n"
                                        "}\n";

constexpr GLsizei log_capacity = 4096;

bool compile_shader(GLuint shader, const char *source, const char *stage)
{
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_TRUE)
        return true;
    char log[log_capacity] = {};
    glGetShaderInfoLog(shader, log_capacity, nullptr, log);
    std::fprintf(stderr, "%s shader error:\n%s", stage, log);
    return false;
}

GLuint link_program(GLuint vertex_shader, GLuint fragment_shader)
{
    const GLuint program = glCreateProgram();
    if (program == 0)
        return 0;
    glAttachShader(program, vertex_shader);
    glAttachShader(program, fragment_shader);
    glBindAttribLocation(program, position_attribute, "vp");
    glBindAttribLocation(program, flag_attribute, "vn");
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE)
        return program;
    char log[log_capacity] = {};
    glGetProgramInfoLog(program, log_capacity, nullptr, log);
    std::fprintf(stderr, "%s", log);
    glDeleteProgram(program);
    return 0;
}

} // namespace

GLuint build_path_program()
{
    return build_path_program(path_vertex_shader, path_fragment_shader);
}

GLuint build_path_program(const char *vertex_source, const char *fragment_source)
{
    const GLuint vertex_shader = glCreateShader(GL_VERTEX_SHADER);
    const GLuint fragment_shader = glCreateShader(GL_FRAGMENT_SHADER);
    GLuint program = 0;
    if (vertex_shader != 0 && fragment_shader != 0 &&
        compile_shader(vertex_shader, vertex_source, "vertex") &&
        compile_shader(fragment_shader, fragment_source, "fragment"))
        program = link_program(vertex_shader, fragment_shader);
    glDeleteShader(vertex_shader);
    glDeleteShader(fragment_shader);
    return program;
}

} // namespace vimbo
