// Damage: what differs between two frames' drawing, so that only that is drawn.
//
//     before   A B C D E F        C, in other words, is gone, X and Y are new: the
//     after    A B X D Y E F      damage holds what C covered and X and Y cover
//
// All other commands are the same in the same order, so beside the damage the
// window looks as it did.
#pragma once

#include "ui/draw_commands.hpp"

namespace vimbo
{

/// A frame's commands and their list.
struct listed_commands {
    const draw_commands &commands;
    const command_list &list;
};

/// The rectangle outside of which both frames draw the same; empty when they do so
/// everywhere. Not the least one where much has changed.
window_rect find_damage(const listed_commands &before, const listed_commands &after);

} // namespace vimbo
