#include "tests/support/ui_driver.hpp"
#include "tests/support/wait.hpp"

#include "ui/fixed_text.hpp"

#include <stdexcept>

namespace rig
{

namespace
{

point centre_of(const struct nk_rect &bounds)
{
    return {static_cast<int>(bounds.x + bounds.w / 2), static_cast<int>(bounds.y + bounds.h / 2)};
}

} // namespace

ui_driver::ui_driver(x_server &screen, const started_with &where)
    : server(screen), layout(where.width, where.height), source_directory(where.source_directory)
{
    layout.app().bar.source_directory = source_directory.c_str();
    vimbo::set_text(layout.app().mosaic.tray_directory, where.tray_directory);
    vimbo::initialise_panels(layout.app());
}

point ui_driver::place_of(std::string_view label, int nth)
{
    layout.frame();
    // Columns that were added in a frame are there in the next.
    layout.frame();
    const std::optional<point> at = layout.find(label, nth);
    if (!at)
        throw std::runtime_error("no widget reads \"" + std::string(label) + '"');
    return *at;
}

struct nk_rect ui_driver::bounds_of(std::string_view text)
{
    place_of(text);
    for (const drawn_text &drawn : layout.texts())
        if (drawn.text == text)
            return drawn.bounds;
    return {};
}

void ui_driver::toggle(std::string_view label, int nth)
{
    const point at = place_of(label, nth);
    layout.click(at);
    server.click(at);
}

void ui_driver::press(std::string_view label, int nth)
{
    server.click(place_of(label, nth));
}

void ui_driver::choose(std::string_view combo, std::string_view item)
{
    const auto read = [](std::string_view text) {
        return [text](std::string_view drawn) { return drawn == text; };
    };
    choose_where(read(combo), read(item));
}

void ui_driver::choose_starting(std::string_view combo, std::string_view item)
{
    // Not the other way round: a narrow list shows of a long text what fits.
    const auto begins = [](std::string_view text) {
        return [text](std::string_view drawn) { return drawn.starts_with(text); };
    };
    choose_where(begins(combo), begins(item));
}

void ui_driver::choose_where(const text_test &combo, const text_test &item)
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

point ui_driver::first_of(const text_test &wanted) const
{
    for (const drawn_text &text : layout.texts())
        if (wanted(text.text))
            return centre_of(text.bounds);
    throw std::runtime_error("no combo box reads so");
}

// A list is drawn over, and so after, all else.
point ui_driver::last_of(const text_test &wanted) const
{
    std::optional<point> found;
    for (const drawn_text &text : layout.texts())
        if (wanted(text.text))
            found = centre_of(text.bounds);
    if (!found)
        throw std::runtime_error("no item reads so");
    return *found;
}

void ui_driver::choose_mosaic(int index)
{
    const std::string now = std::to_string(layout.app().mosaic.mosaic_index);
    choose(now, std::to_string(index));
}

point ui_driver::editor()
{
    const point toggle = place_of("|");
    return {toggle.x / 2, toggle.y};
}

struct nk_rect ui_driver::picture()
{
    layout.frame();
    layout.frame();
    return layout.app().preview.rectangle;
}

void ui_driver::show_bottom()
{
    toggle("-", 1);
}

void ui_driver::show_preview()
{
    toggle("|", 1);
}

void ui_driver::show_statistics()
{
    toggle("|", 0);
}

unsigned long wait_for_window(x_server &screen)
{
    unsigned long window = 0;
    wait_until([&] { return (window = screen.find_window(window_title)) != 0; });
    if (window == 0)
        throw std::runtime_error("the program showed no window");
    screen.attend(window);
    screen.settle();
    return window;
}

} // namespace rig
