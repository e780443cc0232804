#include "app/window.hpp"

#include <GL/glew.h>
#include <gtest/gtest.h>

namespace
{

// As if a context had been there, or not.
void find_functions(bool found)
{
    __glewGenVertexArrays = found ? [](GLsizei, GLuint *) {} : PFNGLGENVERTEXARRAYSPROC{};
}

TEST(GlFunctions, AreThereWhenGlewSaysSo)
{
    find_functions(true);
    EXPECT_TRUE(vimbo::has_gl_functions(GLEW_OK));
    find_functions(false);
}

TEST(GlFunctions, AreThereWhenGlewOnlyMissesAnXDisplay)
{
    find_functions(true);
    EXPECT_TRUE(vimbo::has_gl_functions(GLEW_ERROR_NO_GLX_DISPLAY));
    EXPECT_FALSE(vimbo::has_gl_functions(GLEW_ERROR_NO_GL_VERSION));
    EXPECT_FALSE(vimbo::has_gl_functions(GLEW_ERROR_GL_VERSION_10_ONLY));
    find_functions(false);
}

TEST(GlFunctions, AreNotThereWhenNoneWasFound)
{
    find_functions(false);
    EXPECT_FALSE(vimbo::has_gl_functions(GLEW_ERROR_NO_GLX_DISPLAY));
}

} // namespace
