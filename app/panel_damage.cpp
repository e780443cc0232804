#include "app/panel_damage.hpp"

namespace vimbo
{

namespace
{

// How many commands ahead the same one is looked for.
constexpr int most_ahead = 24;

struct position {
    int before;
    int after;
};

bool is_same(const listed_commands &before, const listed_commands &after, const position &at)
{
    return at.before < before.list.count && at.after < after.list.count &&
           draw_alike(before.commands, before.list.commands[at.before], after.commands,
                      after.list.commands[at.after]);
}

// Two in a row, so that a common label is not taken for the place to go on from.
bool is_same_again(const listed_commands &before, const listed_commands &after, const position &at)
{
    const bool is_last = at.before + 1 == before.list.count || at.after + 1 == after.list.count;
    return is_same(before, after, at) &&
           (is_last || is_same(before, after, {at.before + 1, at.after + 1}));
}

// Where both go on alike with the fewest commands between; one further where that is
// not near.
position next_same(const listed_commands &before, const listed_commands &after, const position &at)
{
    for (int ahead = 1; ahead <= 2 * most_ahead; ++ahead)
        for (int more = 0; more <= ahead; ++more) {
            const position there = {at.before + more, at.after + ahead - more};
            if (is_same_again(before, after, there))
                return there;
        }
    return {at.before + 1, at.after + 1};
}

window_rect bounds_of(const command_list &list, int first, int end)
{
    window_rect bounds = {};
    for (int i = first; i < end && i < list.count; ++i)
        bounds = united(bounds, list.commands[i].bounds);
    return bounds;
}

} // namespace

window_rect find_damage(const listed_commands &before, const listed_commands &after)
{
    window_rect damage = {};
    position at = {0, 0};
    while (at.before < before.list.count || at.after < after.list.count) {
        if (is_same(before, after, at)) {
            ++at.before;
            ++at.after;
            continue;
        }
        const position next = next_same(before, after, at);
        damage = united(damage, bounds_of(before.list, at.before, next.before));
        damage = united(damage, bounds_of(after.list, at.after, next.after));
        at = next;
    }
    return damage;
}

} // namespace vimbo
