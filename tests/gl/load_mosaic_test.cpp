// Mosaic files of every kind, and what of them arrives on the GPU.
#include "mosaic/load_mosaic.hpp"

#include "mosaic/mosaic_file.hpp"
#include "tests/gl/gl_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/special_file.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

namespace
{

using namespace rig;

std::string body_of(std::size_t bytes)
{
    std::string body(bytes, '\0');
    for (std::size_t i = 0; i < bytes; ++i)
        body[i] = static_cast<char>(i * 7 + 1);
    return body;
}

class LoadMosaic : public testing::Test
{
protected:
    void load(const std::string &path)
    {
        std::snprintf(mosaic.mosaic_path, sizeof mosaic.mosaic_path, "%s", path.c_str());
        vimbo::load_mosaic(mosaic);
    }

    void load_bytes(const std::string &bytes)
    {
        write_file(place.file("0.mmv"), bytes);
        load(place.file("0.mmv"));
    }

    void load_good()
    {
        load_bytes(mosaic_bytes({{2, 3}, {4, 5}}));
        ASSERT_EQ(mosaic.mosaic_vertex_count, 3);
    }

    void expect_shown(std::int32_t vertices, const std::string &body) const
    {
        EXPECT_EQ(mosaic.mosaic_vertex_count, vertices);
        ASSERT_EQ(glIsVertexArray(mosaic.mosaic_vao), GL_TRUE);
        ASSERT_EQ(glIsBuffer(mosaic.mosaic_vbo), GL_TRUE);
        const std::vector<unsigned char> bytes = bytes_of_buffer(mosaic.mosaic_vbo);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), std::string(8, '\0') + body);
    }

    void expect_absent(const char *why) const
    {
        EXPECT_EQ(mosaic.mosaic_vertex_count, 0) << why;
        EXPECT_EQ(mosaic.mosaic_vao, 0U) << why;
        EXPECT_EQ(mosaic.mosaic_vbo, 0U) << why;
        EXPECT_EQ(live_objects(), objects) << why;
        EXPECT_EQ(open_descriptors(getpid()), descriptors) << why;
    }

    void TearDown() override
    {
        load(place.file("none.mmv"));
        expect_absent("after the test");
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    const scratch_directory place;
    const int objects = live_objects();
    const std::size_t descriptors = open_descriptors(getpid());
    vimbo::mosaic_state mosaic = {};
};

TEST_F(LoadMosaic, PutsTheTraysCentreInFrontOfThePoints)
{
    for (const std::size_t count : {1, 2, 1000, 100000}) {
        const std::string body = body_of(count * 8);
        load_bytes(mosaic_bytes(8, count, body));
        expect_shown(static_cast<std::int32_t>(count) + 1, body);
    }
}

TEST_F(LoadMosaic, HoldsOnlyTheTraysCentreForNoElements)
{
    load_bytes(mosaic_bytes(8, 0, ""));
    expect_shown(1, "");
    load_bytes(mosaic_bytes(0, 0, "left over"));
    expect_shown(1, "");
}

TEST_F(LoadMosaic, CountsWholePointsAndUploadsTheRest)
{
    struct {
        std::size_t size, count;
        std::int32_t vertices;
    } const cases[] = {{4, 5, 3}, {1, 7, 1}, {1, 8, 2}, {12, 2, 4}, {16, 3, 7}, {20, 1, 3}};
    for (const auto &one : cases) {
        const std::string body = body_of(one.size * one.count);
        load_bytes(mosaic_bytes(static_cast<std::uint32_t>(one.size), one.count, body));
        expect_shown(one.vertices, body);
    }
}

// Objects of other kinds have the same names as its own, or its number of points.
TEST_F(LoadMosaic, FreesNothingThatIsNotItsOwn)
{
    GLuint arrays[128] = {};
    GLuint buffers[64] = {};
    glGenVertexArrays(std::size(arrays), arrays);
    glGenBuffers(std::size(buffers), buffers);
    for (const GLuint name : arrays)
        glBindVertexArray(name);
    for (const GLuint name : buffers)
        glBindBuffer(GL_ARRAY_BUFFER, name);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    const int before = live_objects();
    // With the tray's centre as many as the buffer's name.
    load_bytes(mosaic_bytes(std::vector<vimbo::path_vertex>(buffers[40] - 1)));
    EXPECT_EQ(live_objects(), before + 2);
    load(place.file("none.mmv"));
    EXPECT_EQ(live_objects(), before);
    glDeleteVertexArrays(std::size(arrays), arrays);
    glDeleteBuffers(std::size(buffers), buffers);
}

TEST_F(LoadMosaic, IgnoresBytesBeyondThoseTheHeaderPromises)
{
    load_bytes(mosaic_bytes(8, 1, body_of(8) + "more than was promised"));
    expect_shown(2, body_of(8));
}

TEST_F(LoadMosaic, IgnoresTheHeadersOtherBytes)
{
    std::string bytes = mosaic_bytes(8, 1, body_of(8));
    for (const std::size_t at : {0, 5, 11, 24, 31})
        bytes[at] = '\xff';
    load_bytes(bytes);
    expect_shown(2, body_of(8));
}

TEST_F(LoadMosaic, DescribesItsRecordsToTheVertexArray)
{
    load_good();
    glBindVertexArray(mosaic.mosaic_vao);
    const auto attribute = [](GLuint index, GLenum what) {
        GLint value = -1;
        glGetVertexAttribiv(index, what, &value);
        return value;
    };
    for (const GLuint index : {0U, 1U}) {
        EXPECT_EQ(attribute(index, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_TRUE);
        EXPECT_EQ(attribute(index, GL_VERTEX_ATTRIB_ARRAY_TYPE), GL_INT);
        EXPECT_EQ(attribute(index, GL_VERTEX_ATTRIB_ARRAY_STRIDE), 8);
        EXPECT_EQ(attribute(index, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING),
                  static_cast<GLint>(mosaic.mosaic_vbo));
    }
    EXPECT_EQ(attribute(0, GL_VERTEX_ATTRIB_ARRAY_SIZE), 2);
    EXPECT_EQ(attribute(0, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED), GL_TRUE);
    EXPECT_EQ(attribute(0, GL_VERTEX_ATTRIB_ARRAY_INTEGER), GL_FALSE);
    EXPECT_EQ(attribute(1, GL_VERTEX_ATTRIB_ARRAY_SIZE), 1);
    EXPECT_EQ(attribute(1, GL_VERTEX_ATTRIB_ARRAY_INTEGER), GL_TRUE);
    void *offset = nullptr;
    glGetVertexAttribPointerv(1, GL_VERTEX_ATTRIB_ARRAY_POINTER, &offset);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(offset), 4U);
    glBindVertexArray(0);
}

TEST_F(LoadMosaic, DeletesTheGlObjectsOfTheFormerMosaic)
{
    load_good();
    const int with_one = live_objects();
    for (int i = 0; i < 100; ++i)
        load_good();
    EXPECT_EQ(live_objects(), with_one);
}

TEST_F(LoadMosaic, LeavesNothingOfTheFormerMosaicWhenTheFileIsMissing)
{
    load_good();
    const GLuint buffer = mosaic.mosaic_vbo;
    const GLuint array = mosaic.mosaic_vao;
    load(place.file("missing.mmv"));
    expect_absent("a missing file");
    EXPECT_EQ(glIsBuffer(buffer), GL_FALSE);
    EXPECT_EQ(glIsVertexArray(array), GL_FALSE);
    load(place.file("no/such/directory/0.mmv"));
    expect_absent("a missing directory");
}

TEST_F(LoadMosaic, ShowsNothingWhereThePathIsNoRegularFile)
{
    load_good();
    load(place.path().string());
    expect_absent("a directory");
    load(special_file(place));
    expect_absent("a pipe, or a device");
    load("/dev/zero");
    expect_absent("a device");
}

TEST_F(LoadMosaic, ShowsNothingOfAFileShorterThanItsHeaderPromises)
{
    const std::string whole = mosaic_bytes(8, 3, body_of(24));
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{31}, std::size_t{32},
                                   whole.size() - 8, whole.size() - 1}) {
        load_good();
        load_bytes(whole.substr(0, size));
        expect_absent(std::to_string(size).c_str());
    }
    load_bytes(whole);
    expect_shown(4, body_of(24));
}

TEST_F(LoadMosaic, ShowsNothingWhenTheHeaderPromisesTheImpossible)
{
    const std::pair<std::uint32_t, std::uint64_t> promises[] = {
        {8, UINT64_MAX},
        {16, std::uint64_t{1} << 60},
        {UINT32_MAX, UINT64_MAX},
        {8, std::uint64_t{1} << 40},
        {0, 1},
        {0, UINT64_MAX},
        {1, UINT64_MAX - 7},
    };
    for (const auto &[size, count] : promises) {
        load_good();
        load_bytes(mosaic_bytes(size, count, body_of(64)));
        expect_absent("a promise that cannot be kept");
    }
}

// What happens to the file between the look at its header and that at its body.
std::function<void()> meanwhile;

class MosaicChangedWhileRead : public LoadMosaic
{
protected:
    // More than a stream reads ahead with the header.
    static constexpr std::size_t points = 20000;

    MosaicChangedWhileRead()
    {
        map_buffer = __glewMapBuffer;
        __glewMapBuffer = [](GLenum target, GLenum access) {
            meanwhile();
            return map_buffer(target, access);
        };
    }

    ~MosaicChangedWhileRead() override
    {
        __glewMapBuffer = map_buffer;
        meanwhile = nullptr;
    }

    void load_and(std::function<void()> change)
    {
        meanwhile = std::move(change);
        load_bytes(mosaic_bytes(8, points, body_of(points * 8)));
        meanwhile = [] {};
    }

    static PFNGLMAPBUFFERPROC map_buffer;
};

PFNGLMAPBUFFERPROC MosaicChangedWhileRead::map_buffer;

TEST_F(MosaicChangedWhileRead, ShowsNothingWhenItIsCut)
{
    for (const std::size_t left :
         {std::size_t{0}, std::size_t{31}, std::size_t{32}, points, 31 + points * 8}) {
        load_and([&] { std::filesystem::resize_file(place.file("0.mmv"), left); });
        expect_absent(std::to_string(left).c_str());
    }
}

TEST_F(MosaicChangedWhileRead, IsShownAsItWasOpenedWhenItIsReplaced)
{
    load_and([&] {
        write_file(place.file("new"), mosaic_bytes({{1, 1}}));
        std::filesystem::rename(place.file("new"), place.file("0.mmv"));
    });
    expect_shown(points + 1, body_of(points * 8));
    load(place.file("0.mmv"));
    EXPECT_EQ(mosaic.mosaic_vertex_count, 2) << "the new one";
}

TEST_F(MosaicChangedWhileRead, IsShownAsItWasOpenedWhenItIsRemoved)
{
    load_and([&] { std::filesystem::remove(place.file("0.mmv")); });
    expect_shown(points + 1, body_of(points * 8));
}

TEST_F(MosaicChangedWhileRead, IsReadAsFarAsItsHeaderPromisesWhenItGrows)
{
    load_and([&] {
        std::ofstream(place.file("0.mmv"), std::ios::app | std::ios::binary) << body_of(1000000);
    });
    expect_shown(points + 1, body_of(points * 8));
}

// A file with holes is as long as its header says.
TEST_F(LoadMosaic, ShowsNothingOfAFileLargerThanMemory)
{
    load_good();
    const std::uint64_t count = std::uint64_t{1} << 40;
    write_file(place.file("0.mmv"), mosaic_bytes(8, count, ""));
    std::filesystem::resize_file(place.file("0.mmv"), vimbo::mosaic_header_size + 8 * count);
    load(place.file("0.mmv"));
    expect_absent("8 TiB");
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_OUT_OF_MEMORY));
}

TEST_F(LoadMosaic, ShowsNothingWhenTheDriverGrantsNoMemory)
{
    const PFNGLMAPBUFFERPROC map_buffer = __glewMapBuffer;
    __glewMapBuffer = [](GLenum, GLenum) -> void * { return nullptr; };
    load_bytes(mosaic_bytes(8, 3, body_of(24)));
    __glewMapBuffer = map_buffer;
    expect_absent("no memory");
}

} // namespace
