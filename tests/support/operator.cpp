#include "tests/support/operator.hpp"

#include "ui/fixed_text.hpp"

#include <stdexcept>

namespace bench
{

desk_operator::desk_operator(x_session &screen, const desk &where)
    : session(screen), layout(where.width, where.height), source_directory(where.source_directory)
{
    layout.app().bar.source_directory = source_directory.c_str();
    vimbo::set_text(layout.app().mosaic.tray_directory, where.tray_directory);
    vimbo::initialise_panels(layout.app());
}

point desk_operator::place_of(std::string_view label, int nth)
{
    layout.frame();
    // Columns that were added in a frame are there in the next.
    layout.frame();
    const std::optional<point> at = layout.find(label, nth);
    if (!at)
        throw std::runtime_error("no widget reads \"" + std::string(label) + '"');
    return *at;
}

void desk_operator::toggle(std::string_view label, int nth)
{
    const point at = place_of(label, nth);
    layout.click(at);
    session.click(at);
}

void desk_operator::press(std::string_view label, int nth)
{
    session.click(place_of(label, nth));
}

void desk_operator::choose(std::string_view combo, std::string_view item)
{
    const point header = place_of(combo);
    layout.click(header);
    session.click(header);
    const std::optional<point> at = layout.find(item);
    if (!at)
        throw std::runtime_error("no item reads \"" + std::string(item) + '"');
    layout.click(*at);
    session.click(*at);
    // Away from the list's place, over nothing that reacts.
    session.move({2, 2});
}

point desk_operator::editor()
{
    const point toggle = place_of("|");
    return {toggle.x / 2, toggle.y};
}

struct nk_rect desk_operator::picture()
{
    layout.frame();
    layout.frame();
    return layout.app().preview.rectangle;
}

void desk_operator::show_bottom()
{
    toggle("-", 1);
}

void desk_operator::show_preview()
{
    toggle("|", 1);
}

void desk_operator::show_statistics()
{
    toggle("|", 0);
}

unsigned long wait_for_window(x_session &screen)
{
    unsigned long window = 0;
    wait_until([&] { return (window = screen.find_window("Orvanne Material Editor")) != 0; });
    if (window == 0)
        throw std::runtime_error("the program showed no window");
    screen.attend(window);
    screen.settle();
    return window;
}

} // namespace bench
