#include "ui/commands_in_pixels.hpp"

#include "ui/nuklear.hpp"
#include "ui/pixel_ratio.hpp"

#include <algorithm>

namespace vimbo
{

namespace
{

// Where a range that begins at `at` ends; far away it wraps around, as nothing is seen
// there.
std::int32_t end_of(std::int32_t at, std::uint32_t length)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(at) + length);
}

// A clip, a rectangle or a text.
template <typename Shape>
void put_box(Shape &shape, const pixel_ratio &ratio)
{
    const std::int32_t right = in_pixels(end_of(shape.x, shape.w), ratio.x);
    const std::int32_t bottom = in_pixels(end_of(shape.y, shape.h), ratio.y);
    shape.x = in_pixels(shape.x, ratio.x);
    shape.y = in_pixels(shape.y, ratio.y);
    shape.w = static_cast<std::uint32_t>(right) - static_cast<std::uint32_t>(shape.x);
    shape.h = static_cast<std::uint32_t>(bottom) - static_cast<std::uint32_t>(shape.y);
}

void put_point(struct nk_vec2i &point, const pixel_ratio &ratio)
{
    point.x = in_pixels(point.x, ratio.x);
    point.y = in_pixels(point.y, ratio.y);
}

// A line's thickness, or a corner's radius.
unsigned int put_length(unsigned int length, const pixel_ratio &ratio)
{
    return static_cast<unsigned int>(in_pixels(static_cast<std::int32_t>(length), ratio.x));
}

void put_command(nk_command &command, const pixel_ratio &ratio)
{
    switch (command.type) {
    case NK_COMMAND_SCISSOR:
        put_box(reinterpret_cast<nk_command_scissor &>(command), ratio);
        break;
    case NK_COMMAND_LINE: {
        auto &line = reinterpret_cast<nk_command_line &>(command);
        put_point(line.begin, ratio);
        put_point(line.end, ratio);
        line.line_thickness = put_length(line.line_thickness, ratio);
        break;
    }
    case NK_COMMAND_RECT: {
        auto &shape = reinterpret_cast<nk_command_rect &>(command);
        put_box(shape, ratio);
        shape.line_thickness = put_length(shape.line_thickness, ratio);
        shape.rounding = put_length(shape.rounding, ratio);
        break;
    }
    case NK_COMMAND_RECT_FILLED: {
        auto &shape = reinterpret_cast<nk_command_rect_filled &>(command);
        put_box(shape, ratio);
        shape.rounding = put_length(shape.rounding, ratio);
        break;
    }
    case NK_COMMAND_TRIANGLE_FILLED: {
        auto &shape = reinterpret_cast<nk_command_triangle_filled &>(command);
        for (struct nk_vec2i *corner : {&shape.a, &shape.b, &shape.c})
            put_point(*corner, ratio);
        break;
    }
    case NK_COMMAND_TEXT: {
        auto &text = reinterpret_cast<nk_command_text &>(command);
        put_box(text, ratio);
        text.height = glyph_pixels(text.height, ratio);
        break;
    }
    default:
        break;
    }
}

} // namespace

void put_on_pixels(const draw_commands &commands, const pixel_ratio &ratio)
{
    if (ratio == pixel_ratio{})
        return;
    std::size_t offset = commands.first;
    while (offset < commands.memory.size()) {
        auto &command = reinterpret_cast<nk_command &>(commands.memory[offset]);
        put_command(command, ratio);
        offset = command.next;
    }
}

} // namespace vimbo
