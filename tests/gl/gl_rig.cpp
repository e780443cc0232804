#include "tests/gl/gl_rig.hpp"

#include "tests/support/golden.hpp"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace rig
{

canvas::canvas(int width, int height) : columns(width), rows(height)
{
    glGenFramebuffers(1, &frame_buffer);
    glBindFramebuffer(GL_FRAMEBUFFER, frame_buffer);
    glGenRenderbuffers(1, &pixels);
    glBindRenderbuffer(GL_RENDERBUFFER, pixels);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, pixels);
    glViewport(0, 0, width, height);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

canvas::~canvas()
{
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "a GL call was wrong";
    if (testing::Test::HasFailure())
        std::printf("the picture of the failure: %s\n", save_picture(as_image()).c_str());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &frame_buffer);
    glDeleteRenderbuffers(1, &pixels);
}

image canvas::as_image() const
{
    std::vector<unsigned char> all(static_cast<std::size_t>(columns) *
                                   static_cast<std::size_t>(rows) * 4);
    glReadPixels(0, 0, columns, rows, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
    return image_of(all, columns, rows);
}

colour canvas::at(int x, int y) const
{
    unsigned char pixel[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    return {pixel[0], pixel[1], pixel[2]};
}

int canvas::count(colour wanted) const
{
    std::vector<unsigned char> all(static_cast<std::size_t>(columns) *
                                   static_cast<std::size_t>(rows) * 4);
    glReadPixels(0, 0, columns, rows, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
    int found = 0;
    for (std::size_t i = 0; i < all.size(); i += 4)
        found += alike({all[i], all[i + 1], all[i + 2]}, wanted) ? 1 : 0;
    return found;
}

bool alike(colour one, colour other)
{
    return std::abs(one.red - other.red) <= 1 && std::abs(one.green - other.green) <= 1 &&
           std::abs(one.blue - other.blue) <= 1;
}

int live_objects()
{
    // Drivers give names in order, so those of a test's few objects are low.
    constexpr GLuint names = 4096;
    // One that is in use stays there although it was deleted.
    glUseProgram(0);
    int count = 0;
    for (GLuint name = 1; name < names; ++name) {
        count += glIsBuffer(name) + glIsVertexArray(name);
        count += glIsShader(name) + glIsProgram(name);
        count += glIsTexture(name) + glIsFramebuffer(name) + glIsRenderbuffer(name);
    }
    return count;
}

std::vector<unsigned char> bytes_of_buffer(GLuint buffer)
{
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    GLint size = 0;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, size, bytes.data());
    return bytes;
}

image image_of(const std::vector<unsigned char> &pixels, int width, int height)
{
    image picture = blank_image(width, height, {});
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto at = static_cast<std::size_t>((height - 1 - y) * width + x) * 4;
            picture.at(x, y) = {pixels[at], pixels[at + 1], pixels[at + 2]};
        }
    return picture;
}

std::string save_picture(const image &picture)
{
    const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path folder = "failures";
    std::filesystem::create_directories(folder);
    const std::filesystem::path file =
        folder / (std::string(test->test_suite_name()) + '.' + test->name() + ".png");
    save_png(picture, file.string());
    return std::filesystem::absolute(file).string();
}

std::string save_difference(const image &wanted, const image &drawn)
{
    return save_picture(side_by_side(wanted, drawn, compare(wanted, drawn, 0)));
}

} // namespace rig

namespace
{

// One context for all tests of the executable, as the program makes its own.
bool make_context()
{
    if (glfwInit() == GLFW_FALSE)
        return false;
    glfwWindowHint(GLFW_VISIBLE, GLFW_FALSE);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow *window =
        glfwCreateWindow(rig::window_width, rig::window_height, "tests", nullptr, nullptr);
    if (window == nullptr)
        return false;
    glfwMakeContextCurrent(window);
    glewExperimental = GL_TRUE;
    return glewInit() == GLEW_OK;
}

// A test that hangs is named, as all of them together are one to whoever runs them.
class hang_watch : public testing::EmptyTestEventListener
{
public:
    hang_watch()
    {
        std::thread(watch, now).detach();
    }

private:
    // Shared with the thread, which outlives the listener.
    struct test_under_way {
        std::mutex lock;
        std::string name; // empty between the tests
        std::chrono::steady_clock::time_point begun;
    };

    void OnTestStart(const testing::TestInfo &test) override
    {
        const std::lock_guard held(now->lock);
        now->name = std::string(test.test_suite_name()) + '.' + test.name();
        now->begun = std::chrono::steady_clock::now();
    }

    void OnTestEnd(const testing::TestInfo & /*test*/) override
    {
        const std::lock_guard held(now->lock);
        now->name.clear();
    }

    static void watch(const std::shared_ptr<test_under_way> &test)
    {
        constexpr std::chrono::seconds limit(250);
        for (;;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            const std::lock_guard held(test->lock);
            if (test->name.empty() || std::chrono::steady_clock::now() - test->begun < limit)
                continue;
            std::fprintf(stderr, "\n%s does not end\n", test->name.c_str());
            std::_Exit(1);
        }
    }

    const std::shared_ptr<test_under_way> now = std::make_shared<test_under_way>();
};

} // namespace

int main(int argument_count, char *arguments[])
{
    testing::InitGoogleTest(&argument_count, arguments);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    rig::open_display();
    if (!make_context()) {
        std::fputs("no OpenGL 3.3 context\n", stderr);
        return 1;
    }
    testing::UnitTest::GetInstance()->listeners().Append(new hang_watch);
    const int status = RUN_ALL_TESTS();
    glfwTerminate();
    return status;
}
