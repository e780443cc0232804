#include "tests/support/compositor.hpp"

#include "tests/support/wait.hpp"

#include <stdexcept>

namespace rig
{

namespace
{

constexpr char screen_name[] = "X11-1";

std::string settings(int width, int height, double scale)
{
    return std::string("output ") + screen_name + " mode " + std::to_string(width) + 'x' +
           std::to_string(height) + " scale " + std::to_string(scale) +
           "\n"
           "default_border none\n"
           "xwayland disable\n"
           "for_window [app_id=\".*\"] fullscreen enable\n";
}

} // namespace

compositor::compositor(x_server &where, int screen_width, int screen_height, double scale)
    : server(where), width(screen_width), height(screen_height), pixels_per_unit(scale)
{
    write_file(place.file("settings"), settings(width, height, scale));
    sway.emplace(program::options{.arguments = {"sway", "-c", place.file("settings")},
                                  .environment = {"XDG_RUNTIME_DIR=" + place.path().string(),
                                                  "DISPLAY=" + server.name(),
                                                  "SWAYSOCK=" + place.file("commands"),
                                                  "WLR_BACKENDS=x11", "WLR_RENDERER=pixman"},
                                  .directory = {},
                                  .output = place.file("log")});
    const auto started = [&] {
        window = server.find_window({});
        return window != 0 && std::filesystem::exists(place.file("commands")) &&
               ask({"-t", "get_outputs"}).find("\"success\": false") == std::string::npos;
    };
    if (!wait_until(started))
        throw std::runtime_error("the compositor did not start: " + read_file(place.file("log")));
    server.count_in_units_of(scale);
}

compositor::~compositor()
{
    server.count_in_units_of(1);
}

std::vector<std::string> compositor::environment() const
{
    return {"XDG_RUNTIME_DIR=" + place.path().string(), "WAYLAND_DISPLAY=wayland-1",
            "XDG_SESSION_TYPE=wayland", "DISPLAY="};
}

std::string compositor::ask(const std::vector<std::string> &what) const
{
    const std::string answer = place.file("answer");
    std::vector<std::string> arguments = {"swaymsg", "-s", place.file("commands")};
    arguments.insert(arguments.end(), what.begin(), what.end());
    program asking({.arguments = arguments, .environment = {}, .directory = {}, .output = answer});
    if (asking.wait_for_end() != 0)
        throw std::runtime_error("the compositor refuses: " + read_file(answer));
    return read_file(answer);
}

void compositor::tell(const std::string &command) const
{
    ask({command});
}

void compositor::set_scale(double scale)
{
    tell(std::string("output ") + screen_name + " scale " + std::to_string(scale));
    pixels_per_unit = scale;
    server.count_in_units_of(scale);
}

std::string compositor::windows() const
{
    return ask({"-t", "get_tree", "-r"});
}

bool compositor::shows(std::string_view title) const
{
    const std::string all = windows();
    return all.find('"' + std::string(title) + '"') != std::string::npos;
}

} // namespace rig
