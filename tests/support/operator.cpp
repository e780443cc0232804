#include "tests/support/operator.hpp"

#include "ui/fixed_text.hpp"

#include <stdexcept>

namespace bench
{

namespace
{

point centre_of(const struct nk_rect &bounds)
{
    return {static_cast<int>(bounds.x + bounds.w / 2), static_cast<int>(bounds.y + bounds.h / 2)};
}

} // namespace

desk_operator::desk_operator(x_server &screen, const desk &where)
    : server(screen), layout(where.width, where.height), source_directory(where.source_directory)
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

struct nk_rect desk_operator::bounds_of(std::string_view text)
{
    place_of(text);
    for (const drawn_text &drawn : layout.texts())
        if (drawn.text == text)
            return drawn.bounds;
    return {};
}

void desk_operator::toggle(std::string_view label, int nth)
{
    const point at = place_of(label, nth);
    layout.click(at);
    server.click(at);
}

void desk_operator::press(std::string_view label, int nth)
{
    server.click(place_of(label, nth));
}

void desk_operator::choose(std::string_view combo, std::string_view item)
{
    const auto read = [](std::string_view text) {
        return [text](std::string_view drawn) { return drawn == text; };
    };
    choose_where(read(combo), read(item));
}

void desk_operator::choose_starting(std::string_view combo, std::string_view item)
{
    // Not the other way round: a narrow list shows of a long text what fits.
    const auto begins = [](std::string_view text) {
        return [text](std::string_view drawn) { return drawn.starts_with(text); };
    };
    choose_where(begins(combo), begins(item));
}

void desk_operator::choose_where(const text_test &combo, const text_test &item)
{
    layout.frame();
    layout.frame();
    const point header = first_of(combo);
    layout.click(header);
    server.click(header);
    const point at = last_of(item);
    layout.click(at);
    server.click(at);
    // Away from the list's place, over nothing that reacts.
    server.move({2, 2});
    server.settle();
}

point desk_operator::first_of(const text_test &wanted) const
{
    for (const drawn_text &text : layout.texts())
        if (wanted(text.text))
            return centre_of(text.bounds);
    throw std::runtime_error("no combo box reads so");
}

// A list is drawn over, and so after, all else.
point desk_operator::last_of(const text_test &wanted) const
{
    std::optional<point> found;
    for (const drawn_text &text : layout.texts())
        if (wanted(text.text))
            found = centre_of(text.bounds);
    if (!found)
        throw std::runtime_error("no item reads so");
    return *found;
}

void desk_operator::choose_mosaic(int index)
{
    const std::string now = std::to_string(layout.app().mosaic.mosaic_index);
    choose(now, std::to_string(index));
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

unsigned long wait_for_window(x_server &screen)
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
