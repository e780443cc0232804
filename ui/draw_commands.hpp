// What Nuklear is to draw after a layout: a list of commands in its memory, linked
// by offsets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

struct nk_command;
struct nk_context;

namespace vimbo
{

/// In the window's units, origin top left; right and bottom are outside.
struct window_rect {
    int left;
    int top;
    int right;
    int bottom;
};

bool is_empty(const window_rect &rect);
window_rect intersection(const window_rect &a, const window_rect &b);
/// The least one that holds both; an empty one adds nothing.
window_rect united(const window_rect &a, const window_rect &b);

/// Commands as they lie in Nuklear's memory, or in a copy of it.
struct draw_commands {
    std::span<char> memory;
    std::size_t first; // offset of the first one; the memory's size where there is none
};

/// Completes the layout's drawing commands. Every layout has to be asked for them,
/// shown or not: Nuklear takes its lists of popups apart only then, and left
/// standing, they would join into a circle.
draw_commands complete_draw_commands(nk_context *context);

/// A command, and what it can change of the window.
struct placed_command {
    std::uint32_t offset;
    std::uint32_t size; // in bytes, its header included
    window_rect clip;   // that holds for it
    window_rect bounds; // of its pixels, within the clip
};

/// More than the fullest window has.
inline constexpr int command_capacity = 8192;

struct command_list {
    placed_command commands[command_capacity];
    int count;
};

/// Lists the commands in their order, but for those that only set the clip. False
/// when there are too many, or one of a kind that this program does not use.
bool list_commands(command_list &list, const draw_commands &commands);

/// True when both draw the same at the same place.
bool draw_alike(const draw_commands &a, const placed_command &of_a, const draw_commands &b,
                const placed_command &of_b);

/// Has the commands that change nothing within the rectangle draw nothing.
void drop_commands_beside(const draw_commands &commands, const command_list &list,
                          const window_rect &rect);

} // namespace vimbo
