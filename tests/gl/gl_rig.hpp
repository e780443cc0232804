// A place to draw at without a screen: a real GL context, and canvases whose
// pixels can be read back. The executable's main function sets the context up.
#pragma once

#include "mosaic/mosaic.hpp"
#include "mosaic/path_vertex.hpp"
#include "render/path_buffer.hpp"
#include "tests/support/image.hpp"

#include <string>
#include <vector>

namespace rig
{

/// Gives the process a display, where it has to bring its own; until its end.
void open_display();

/// What is drawn while it lives goes here. Pixels count from the bottom left. Where
/// its test has failed, it leaves a picture of itself.
class canvas
{
public:
    canvas(int width, int height);
    ~canvas();
    canvas(const canvas &) = delete;
    canvas &operator=(const canvas &) = delete;

    colour at(int x, int y) const;
    image as_image() const;
    /// How many pixels have this colour, or one that differs by rounding.
    int count(colour wanted) const;

private:
    int columns, rows;
    GLuint frame_buffer = 0;
    GLuint pixels = 0;
};

/// True when no channel differs by more than rounding can make it.
bool alike(colour one, colour other);

/// Buffers, vertex arrays, shaders, programs, textures, framebuffers and
/// renderbuffers that exist.
int live_objects();

std::vector<unsigned char> bytes_of_buffer(GLuint buffer);

/// What glReadPixels has given, RGBA, from the lowest row up.
image image_of(const std::vector<unsigned char> &pixels, int width, int height);

/// Leaves a picture in a file of the running test's name; gives the file's path.
std::string save_picture(const image &picture);

/// The same of the wanted picture, the drawn one and where they differ, side by side.
std::string save_difference(const image &wanted, const image &drawn);

/// Size of the context's own window.
inline constexpr int window_width = 600;
inline constexpr int window_height = 440;

inline constexpr colour untouched = {0, 0, 0};
inline constexpr colour background = {110, 142, 190};
inline constexpr colour mark = {255, 255, 255};
inline constexpr colour jump = {128, 166, 217};
inline constexpr colour outline = {217, 166, 115};

} // namespace rig
