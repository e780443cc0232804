// A preview in the tests' window: a mosaic, a view, the picture that is kept of them,
// and the one that is drawn directly.
#pragma once

#include "mosaic/load_mosaic.hpp"
#include "render/path_program.hpp"
#include "render/preview_picture.hpp"
#include "render/tray_outline.hpp"
#include "tests/gl/gl_rig.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace rig
{

using pixels = std::vector<unsigned char>;

class preview_rig : public testing::Test
{
protected:
    preview_rig();
    /// Looks for GL errors and objects that are left.
    ~preview_rig() override;

    void load(const std::vector<vimbo::path_vertex> &points);

    vimbo::picture_parts parts() const
    {
        return {program, mosaic, outline};
    }

    static pixels window_pixels();
    static void blacken();
    static int differing(const pixels &a, const pixels &b);

    /// One frame, without any slices between it and the next.
    void draw_frame();
    /// So many slices at most.
    void draw_slices(int most);
    /// Draws slices until a pass has drawn something: the boxes come first, however many
    /// slices they take on a busy machine.
    void begin_pass();
    /// The whole picture, in a frame and its slices.
    void finish();

    pixels direct_pixels();

    /// The window as it was drawn last against these pixels, or the direct draw's.
    static void expect_same(const pixels &drawn, const pixels &wanted, const std::string &when);
    void expect_direct_picture(const std::string &when);

    scratch_directory place;
    const int objects = live_objects();
    GLuint program = vimbo::build_path_program();
    vimbo::path_buffer outline = vimbo::build_tray_outline(25600000, 25600000, 2560000);
    vimbo::frame_state frame = {};
    vimbo::preview_state preview = {};
    vimbo::mosaic_state mosaic = {};
    vimbo::kept_picture kept = {};
};

} // namespace rig
