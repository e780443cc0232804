#include "tests/gl/preview_rig.hpp"

#include "ui/fixed_text.hpp"

#include <algorithm>

namespace rig
{

namespace
{

constexpr int endless = 100000;

// Leaves both, and where they differ, as a file to look at; says where.
std::string save_both(const pixels &drawn, const pixels &wanted)
{
    return drawn == wanted ? "alike"
                           : save_difference(image_of(wanted, window_width, window_height),
                                             image_of(drawn, window_width, window_height));
}

} // namespace

preview_rig::preview_rig()
{
    frame.window_width = window_width;
    frame.window_height = window_height;
    preview.rectangle = {.x = 61, .y = 33, .w = 480, .h = 371};
}

preview_rig::~preview_rig()
{
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    vimbo::delete_offscreen(kept.shown.target);
    vimbo::delete_offscreen(kept.next.target);
    vimbo::delete_offscreen(kept.stand_in);
    vimbo::set_text(mosaic.mosaic_path, "");
    vimbo::load_mosaic(mosaic);
    glDeleteVertexArrays(1, &outline.vertex_array);
    glDeleteBuffers(1, &outline.buffer);
    glUseProgram(0);
    glDeleteProgram(program);
    EXPECT_EQ(live_objects(), objects) << "objects are left";
}

void preview_rig::load(const std::vector<vimbo::path_vertex> &points)
{
    write_file(place.file("mosaic"), mosaic_bytes(points));
    vimbo::set_text(mosaic.mosaic_path, place.file("mosaic"));
    vimbo::load_mosaic(mosaic);
}

pixels preview_rig::window_pixels()
{
    pixels all(std::size_t{window_width} * window_height * 4);
    glReadPixels(0, 0, window_width, window_height, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
    return all;
}

void preview_rig::blacken()
{
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

int preview_rig::differing(const pixels &a, const pixels &b)
{
    int count = 0;
    for (std::size_t i = 0; i < a.size(); i += 4)
        count += std::equal(&a[i], &a[i] + 4, &b[i]) ? 0 : 1;
    return count;
}

void preview_rig::draw_frame()
{
    blacken();
    vimbo::draw_preview(frame, preview, parts(), kept);
}

void preview_rig::draw_slices(int most)
{
    for (int i = 0; i < most && vimbo::is_unfinished(kept); ++i)
        vimbo::draw_slice(kept, parts());
}

void preview_rig::begin_pass()
{
    constexpr int most_slices = 1000;
    for (int i = 0; i < most_slices && !kept.pass.under_way; ++i)
        draw_slices(1);
}

void preview_rig::finish()
{
    draw_frame();
    draw_slices(endless);
    EXPECT_FALSE(vimbo::is_unfinished(kept)) << "slices without an end";
    draw_frame();
}

pixels preview_rig::direct_pixels()
{
    blacken();
    vimbo::draw_preview_directly(frame, preview, parts());
    return window_pixels();
}

void preview_rig::expect_same(const pixels &drawn, const pixels &wanted, const std::string &when)
{
    EXPECT_EQ(differing(drawn, wanted), 0) << when << ": " << save_both(drawn, wanted);
}

void preview_rig::expect_direct_picture(const std::string &when)
{
    const pixels kept_pixels = window_pixels();
    expect_same(kept_pixels, direct_pixels(), when);
}

} // namespace rig
