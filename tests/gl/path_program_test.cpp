#include "render/path_program.hpp"
#include "tests/support/texts.hpp"

#include "tests/gl/gl_rig.hpp"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace
{

using namespace rig;

constexpr const char *vertex_source = "#version 330\nin vec4 vp;\nflat out int l;\n"
                                      "void main() { gl_Position = vp; l = 1; }\n";
constexpr const char *fragment_source = "#version 330\nflat in int l;\nout vec3 clr;\n"
                                        "void main() { clr = vec3(float(l)); }\n";
constexpr const char *broken = "#version 330\nvoid main() { no such thing }\n";

struct outcome {
    GLuint program;
    std::string message;
};

outcome build(const char *vertex, const char *fragment)
{
    testing::internal::CaptureStderr();
    const GLuint program = vimbo::build_path_program(vertex, fragment);
    return {program, testing::internal::GetCapturedStderr()};
}

class PathProgram : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(live_objects(), before) << "an object was left";
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    const int before = live_objects();
};

// What the driver was given, as it keeps it.
std::string source_of(GLuint program, GLenum kind)
{
    GLuint shaders[2] = {};
    GLsizei count = 0;
    glGetAttachedShaders(program, 2, &count, shaders);
    for (GLsizei i = 0; i < count; ++i) {
        GLint type = 0;
        glGetShaderiv(shaders[i], GL_SHADER_TYPE, &type);
        if (static_cast<GLenum>(type) != kind)
            continue;
        char source[4096] = {};
        glGetShaderSource(shaders[i], sizeof source, nullptr, source);
        return source;
    }
    return "no such shader";
}

TEST_F(PathProgram, IsMadeOfTheseShadersToTheLetter)
{
    testing::internal::CaptureStderr();
    const GLuint program = vimbo::build_path_program();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_NE(program, 0U);
    EXPECT_EQ(source_of(program, GL_VERTEX_SHADER), "#version 330\n"
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
                                                    "}\n");
    EXPECT_EQ(source_of(program, GL_FRAGMENT_SHADER), "#version 330\n"
                                                      "\n"
                                                      "flat in lowp int l;\n"
                                                      "uniform vec3 klr[2];\n"
                                                      "out vec3 clr;\n"
                                                      "\n"
                                                      "void main() {\n"
                                                      "\tclr = klr[l];\n"
                                                      "}\n");
    glDeleteProgram(program);
}

TEST_F(PathProgram, HasItsInputsAtTheLocationsThatBuffersFeed)
{
    // Left to itself, the driver numbers inputs as it comes to them.
    const char *names[] = {"in vec4 vp;\n", "in int vn;\n", "in vec4 other;\n"};
    for (const auto &[first, second, third] : {std::tuple{0, 1, 2}, {2, 1, 0}, {1, 2, 0}}) {
        const std::string source = std::string("#version 330\n") + names[first] + names[second] +
                                   names[third] +
                                   "flat out int l;\n"
                                   "void main() { gl_Position = vp + other; l = vn; }\n";
        const outcome result = build(source.c_str(), fragment_source);
        ASSERT_NE(result.program, 0U) << result.message;
        EXPECT_EQ(glGetAttribLocation(result.program, "vp"), 0) << source;
        EXPECT_EQ(glGetAttribLocation(result.program, "vn"), 1) << source;
        glDeleteProgram(result.program);
    }
}

TEST_F(PathProgram, IsBuiltFromGivenSources)
{
    const outcome result = build(vertex_source, fragment_source);
    EXPECT_NE(result.program, 0U);
    EXPECT_EQ(result.message, "");
    glDeleteProgram(result.program);
}

TEST_F(PathProgram, ReportsAVertexShaderThatDoesNotCompile)
{
    const outcome result = build(broken, fragment_source);
    EXPECT_EQ(result.program, 0U);
    EXPECT_TRUE(begins(result.message, "vertex shader error:\n"));
    EXPECT_GT(result.message.size(), 25U) << "the log is missing";
}

TEST_F(PathProgram, ReportsAFragmentShaderThatDoesNotCompile)
{
    const outcome result = build(vertex_source, broken);
    EXPECT_EQ(result.program, 0U);
    EXPECT_TRUE(begins(result.message, "fragment shader error:\n"));
    EXPECT_GT(result.message.size(), 27U) << "the log is missing";
}

TEST_F(PathProgram, ReportsOnlyTheFirstOfTwoBrokenShaders)
{
    const outcome result = build(broken, broken);
    EXPECT_EQ(result.program, 0U);
    EXPECT_TRUE(lacks(result.message, "fragment"));
}

TEST_F(PathProgram, ReportsShadersThatDoNotLink)
{
    const outcome result = build(vertex_source, "#version 330\nflat in vec2 l;\nout vec3 clr;\n"
                                                "void main() { clr = vec3(l, 0); }\n");
    EXPECT_EQ(result.program, 0U);
    EXPECT_NE(result.message, "");
    EXPECT_TRUE(lacks(result.message, "shader error:"));
}

TEST_F(PathProgram, IsZeroWhereTheDriverGivesNoObjects)
{
    const PFNGLCREATESHADERPROC create_shader = __glewCreateShader;
    __glewCreateShader = [](GLenum) -> GLuint { return 0; };
    EXPECT_EQ(build(vertex_source, fragment_source).program, 0U);
    __glewCreateShader = create_shader;

    const PFNGLCREATEPROGRAMPROC create_program = __glewCreateProgram;
    __glewCreateProgram = []() -> GLuint { return 0; };
    EXPECT_EQ(build(vertex_source, fragment_source).program, 0U);
    __glewCreateProgram = create_program;
}

} // namespace
