// Drives the running program as its operator does, by the labels of its widgets. It
// lays the same panels out beside the program to know where they are.
#pragma once

#include "tests/support/panel_rig.hpp"
#include "tests/support/x_server.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace rig
{

/// The program's window is known by it.
inline constexpr std::string_view window_title = "Orvanne Material Editor";

class ui_driver
{
public:
    /// What the program was started with.
    struct started_with {
        int width, height;
        std::string source_directory;
        std::string tray_directory;
    };
    ui_driver(x_server &screen, const started_with &where);

    /// Where the nth widget labelled so lies now.
    point place_of(std::string_view label, int nth = 0);

    /// What the first text that reads so takes of the window.
    struct nk_rect bounds_of(std::string_view text);

    /// Clicks a widget that only changes the layout, such as a panel's toggle.
    void toggle(std::string_view label, int nth = 0);
    /// Clicks a widget that makes the program act; the layout is taken to stay.
    void press(std::string_view label, int nth = 0);
    /// Opens the combo box labelled so and clicks one of its items.
    void choose(std::string_view combo, std::string_view item);
    /// The same for texts that begin so: a list shows of a long one what fits.
    void choose_starting(std::string_view combo, std::string_view item);
    /// The mosaic, by its number.
    void choose_mosaic(int index);

    /// The editor row's and the picture's middles.
    point editor();
    struct nk_rect picture();

    void show_bottom();  // the "-" below the editor
    void show_preview(); // the lower "|"; the bottom must be shown
    void show_statistics();

    /// The panels that are laid out beside the program.
    panel_rig &panels()
    {
        return layout;
    }

    const x_server &screen() const
    {
        return server;
    }

private:
    using text_test = std::function<bool(std::string_view)>;
    void choose_where(const text_test &combo, const text_test &item);
    point first_of(const text_test &wanted) const;
    point last_of(const text_test &wanted) const;

    x_server &server;
    panel_rig layout;
    std::string source_directory;
};

/// What a driver needs of a running program: a window under its title,
/// with its first frame on the screen. It is attended from then on.
unsigned long wait_for_window(x_server &screen);

} // namespace rig
