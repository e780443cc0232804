#include "ui/draw_commands.hpp"

#include "ui/nuklear.hpp"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace vimbo
{

namespace
{

// Far beyond any window, and far from where sums overflow.
constexpr int far_away = INT_MAX / 4;
constexpr window_rect everywhere = {-far_away, -far_away, far_away, far_away};

const nk_command &command_at(const draw_commands &commands, std::size_t offset)
{
    return *reinterpret_cast<const nk_command *>(&commands.memory[offset]);
}

template <typename Command>
const Command &as(const nk_command &command)
{
    return reinterpret_cast<const Command &>(command);
}

window_rect rect_of(int x, int y, unsigned int w, unsigned int h, int margin)
{
    return {x - margin, y - margin, x + static_cast<int>(w) + margin,
            y + static_cast<int>(h) + margin};
}

// Smoothed edges reach half a pixel out of a shape, and lines by half their width.
constexpr int smoothing = 1;

int line_margin(unsigned int thickness)
{
    return static_cast<int>(thickness) + smoothing;
}

window_rect around(std::span<const struct nk_vec2i> points, int margin)
{
    window_rect rect = {};
    for (const struct nk_vec2i &point : points)
        rect = united(
            rect, {point.x - margin, point.y - margin, point.x + margin + 1, point.y + margin + 1});
    return rect;
}

struct measured_command {
    std::size_t size;   // 0: of a kind that is not used here
    window_rect bounds; // without the clip
};

measured_command measure_line(const nk_command &command)
{
    const auto &line = as<nk_command_line>(command);
    const struct nk_vec2i ends[] = {line.begin, line.end};
    return {sizeof line, around(ends, line_margin(line.line_thickness))};
}

measured_command measure_text(const nk_command &command)
{
    const auto &text = as<nk_command_text>(command);
    // Glyphs may lean out of their row.
    const int margin = static_cast<int>(std::ceil(text.height));
    return {offsetof(nk_command_text, string) + static_cast<std::size_t>(text.length),
            rect_of(text.x, text.y, text.w, text.h, margin)};
}

measured_command measure_rect(const nk_command &command)
{
    const auto &shape = as<nk_command_rect>(command);
    return {sizeof shape,
            rect_of(shape.x, shape.y, shape.w, shape.h, line_margin(shape.line_thickness))};
}

measured_command measure_filled_rect(const nk_command &command)
{
    const auto &shape = as<nk_command_rect_filled>(command);
    return {sizeof shape, rect_of(shape.x, shape.y, shape.w, shape.h, smoothing)};
}

measured_command measure_triangle(const nk_command &command)
{
    const auto &shape = as<nk_command_triangle_filled>(command);
    const struct nk_vec2i corners[] = {shape.a, shape.b, shape.c};
    return {sizeof shape, around(corners, smoothing)};
}

// The kinds that the program's panels are drawn with.
measured_command measure(const nk_command &command)
{
    switch (command.type) {
    case NK_COMMAND_LINE:
        return measure_line(command);
    case NK_COMMAND_RECT:
        return measure_rect(command);
    case NK_COMMAND_RECT_FILLED:
        return measure_filled_rect(command);
    case NK_COMMAND_TRIANGLE_FILLED:
        return measure_triangle(command);
    case NK_COMMAND_TEXT:
        return measure_text(command);
    default:
        return {};
    }
}

} // namespace

bool is_empty(const window_rect &rect)
{
    return rect.right <= rect.left || rect.bottom <= rect.top;
}

window_rect intersection(const window_rect &a, const window_rect &b)
{
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

window_rect united(const window_rect &a, const window_rect &b)
{
    if (is_empty(a))
        return b;
    if (is_empty(b))
        return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

draw_commands complete_draw_commands(nk_context *context)
{
    const nk_command *first = nk__begin(context);
    auto *memory = static_cast<char *>(context->memory.memory.ptr);
    const std::size_t size = context->memory.allocated;
    const auto offset =
        first != nullptr ? static_cast<std::size_t>(reinterpret_cast<const char *>(first) - memory)
                         : size;
    return {std::span(memory, size), offset};
}

bool list_commands(command_list &list, const draw_commands &commands)
{
    list.count = 0;
    window_rect clip = everywhere;
    std::size_t offset = commands.first;
    while (offset < commands.memory.size()) {
        const nk_command &command = command_at(commands, offset);
        if (command.type == NK_COMMAND_SCISSOR) {
            const auto &scissor = as<nk_command_scissor>(command);
            clip = rect_of(scissor.x, scissor.y, scissor.w, scissor.h, 0);
        } else if (command.type != NK_COMMAND_NOP) {
            const auto [size, bounds] = measure(command);
            if (size == 0 || list.count == command_capacity)
                return false;
            list.commands[list.count++] = {static_cast<std::uint32_t>(offset),
                                           static_cast<std::uint32_t>(size), clip,
                                           intersection(bounds, clip)};
        }
        offset = command.next;
    }
    return true;
}

bool draw_alike(const draw_commands &a, const placed_command &of_a, const draw_commands &b,
                const placed_command &of_b)
{
    constexpr std::size_t header = sizeof(nk_command);
    const nk_command &first = command_at(a, of_a.offset);
    const nk_command &second = command_at(b, of_b.offset);
    return of_a.size == of_b.size && first.type == second.type &&
           std::memcmp(&of_a.clip, &of_b.clip, sizeof of_a.clip) == 0 &&
           std::memcmp(&a.memory[of_a.offset + header], &b.memory[of_b.offset + header],
                       of_a.size - header) == 0;
}

void drop_commands_beside(const draw_commands &commands, const command_list &list,
                          const window_rect &rect)
{
    for (const placed_command &placed :
         std::span(list.commands).first(static_cast<std::size_t>(list.count)))
        if (is_empty(intersection(placed.bounds, rect)))
            reinterpret_cast<nk_command &>(commands.memory[placed.offset]).type = NK_COMMAND_NOP;
}

} // namespace vimbo
