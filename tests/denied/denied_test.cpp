// What libraries seldom deny: the calls below are replaced where this executable
// is linked.
#include "app/window.hpp"
#include "platform/commands.hpp"
#include "platform/files.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/x_server.hpp"

#include <gtest/gtest.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace
{

// True: the call of this name is denied.
struct {
    bool gl_functions, stream_of_file, file_actions;
} denied;

} // namespace

// The linker's names for the original and for what replaces it.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
GLenum __real_glewInit();
GLenum __wrap_glewInit()
{
    return denied.gl_functions ? GLEW_ERROR_NO_GL_VERSION : __real_glewInit();
}

FILE *__real_fdopen(int file, const char *mode);
FILE *__wrap_fdopen(int file, const char *mode)
{
    errno = ENOMEM;
    return denied.stream_of_file ? nullptr : __real_fdopen(file, mode);
}

int __real_posix_spawn_file_actions_init(posix_spawn_file_actions_t *actions);
int __wrap_posix_spawn_file_actions_init(posix_spawn_file_actions_t *actions)
{
    return denied.file_actions ? ENOMEM : __real_posix_spawn_file_actions_init(actions);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace
{

using namespace rig;

class Denied : public testing::Test
{
protected:
    Denied()
    {
        denied = {};
    }
};

TEST_F(Denied, GlFunctionsEndTheStartInOneLine)
{
    const x_server screen(640, 480);
    setenv("DISPLAY", screen.name().c_str(), 1);
    const auto app = std::make_unique<vimbo::app_state>();
    app->frame.window_width = 320;
    app->frame.window_height = 240;
    denied.gl_functions = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(vimbo::open_window(*app), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Failed to setup GLEW\n");
    EXPECT_EQ(screen.find_window("Orvanne Material Editor"), 0U) << "the window is gone";
}

TEST_F(Denied, StreamOfAFileLeavesNothingOpen)
{
    const scratch_directory place;
    write_file(place.file("a"), "text");
    const std::size_t descriptors = open_descriptors(getpid());
    std::uint64_t size = 0;
    denied.stream_of_file = true;
    EXPECT_EQ(vimbo::open_regular_file(place.file("a").c_str(), size), nullptr);
    EXPECT_EQ(open_descriptors(getpid()), descriptors);
    denied.stream_of_file = false;
    FILE *file = vimbo::open_regular_file(place.file("a").c_str(), size);
    ASSERT_NE(file, nullptr);
    std::fclose(file);
}

TEST_F(Denied, FileActionsOfAProcessLeaveNothingBehind)
{
    const std::size_t descriptors = open_descriptors(getpid());
    denied.file_actions = true;
    for (int i = 0; i < 2 * vimbo::max_commands; ++i)
        EXPECT_EQ(vimbo::open_command("true"), nullptr);
    EXPECT_EQ(open_descriptors(getpid()), descriptors);
    EXPECT_EQ(children_of(getpid()), 0U);
}

} // namespace
