#include "render/path_program.hpp"

#include "tests/gl/gl_rig.hpp"

#include <gtest/gtest.h>

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

TEST_F(PathProgram, HasItsInputsAndUniforms)
{
    testing::internal::CaptureStderr();
    const GLuint program = vimbo::build_path_program();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_NE(program, 0U);
    EXPECT_EQ(glGetAttribLocation(program, "vp"), 0);
    EXPECT_EQ(glGetAttribLocation(program, "vn"), 1);
    EXPECT_GE(glGetUniformLocation(program, "m"), 0);
    EXPECT_GE(glGetUniformLocation(program, "klr"), 0);
    GLint shaders = -1;
    glGetProgramiv(program, GL_ATTACHED_SHADERS, &shaders);
    glUseProgram(0);
    glDeleteProgram(program);
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
    EXPECT_EQ(result.message.rfind("vertex shader error:\n", 0), 0U) << result.message;
    EXPECT_GT(result.message.size(), 25U) << "the log is missing";
}

TEST_F(PathProgram, ReportsAFragmentShaderThatDoesNotCompile)
{
    const outcome result = build(vertex_source, broken);
    EXPECT_EQ(result.program, 0U);
    EXPECT_EQ(result.message.rfind("fragment shader error:\n", 0), 0U) << result.message;
    EXPECT_GT(result.message.size(), 27U) << "the log is missing";
}

TEST_F(PathProgram, ReportsOnlyTheFirstOfTwoBrokenShaders)
{
    const outcome result = build(broken, broken);
    EXPECT_EQ(result.program, 0U);
    EXPECT_EQ(result.message.find("fragment"), std::string::npos) << result.message;
}

TEST_F(PathProgram, ReportsShadersThatDoNotLink)
{
    const outcome result = build(vertex_source, "#version 330\nflat in vec2 l;\nout vec3 clr;\n"
                                                "void main() { clr = vec3(l, 0); }\n");
    EXPECT_EQ(result.program, 0U);
    EXPECT_NE(result.message, "");
    EXPECT_EQ(result.message.find("shader error:"), std::string::npos) << result.message;
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
