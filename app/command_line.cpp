#include "app/command_line.hpp"

#include "platform/command_options.hpp"
#include "ui/fixed_text.hpp"

#include <cstdint>
#include <cstdio>

namespace vimbo
{

namespace
{

void print_usage(const char *program)
{
    std::fprintf(
        stderr,
        "Vimbo is mero's interface to korvat.\n"
        "usage: %s [-e tr_w,tr_h,tr_r] [-t tray_directory] [-s src directory] [-w wndw_w,wndw_h]\n"
        "\t-e\twidth,height,radius\t\tExtent of the tray (rounded rectangle form) [mm].\n"
        "\t-s\tpath\t\t\t\tPath of the sources' directory.\n"
        "\t-t\tpath\t\t\t\tPath to the tray.\n"
        "\t-w\twidth,height\t\t\tWindow size [px].\n",
        program);
}

// Wraps around at 32 bits.
length_unit millimetres(length_unit count)
{
    return static_cast<length_unit>(static_cast<std::uint32_t>(count) *
                                    static_cast<std::uint32_t>(length_units_per_mm));
}

// Numbers that the text does not reach keep what they had, and are multiplied
// all the same.
void read_extent(tray_extent &tray, const char *text)
{
    (void)!std::sscanf(text, "%d,%d,%d", &tray.width, &tray.height, &tray.corner_radius);
    tray.width = millimetres(tray.width);
    tray.height = millimetres(tray.height);
    tray.corner_radius = millimetres(tray.corner_radius);
}

bool read_tray_directory(mosaic_state &mosaic, const char *program, const char *text)
{
    if (set_text(mosaic.tray_directory, text))
        return true;
    std::fprintf(stderr, "%s: the tray directory's path is longer than %zu bytes.\n", program,
                 tray_directory_capacity - 1);
    return false;
}

} // namespace

bool read_command_line(app_state &app, int argument_count, char *const arguments[])
{
    option_scan scan = {
        .argument_count = argument_count, .arguments = arguments, .letters = "e:s:t:w:"};
    int option = 0;
    while ((option = next_option(scan)) != no_more_options) {
        switch (option) {
        case 'e':
            read_extent(app.tray, scan.argument);
            break;
        case 's':
            app.bar.source_directory = scan.argument;
            break;
        case 't':
            if (!read_tray_directory(app.mosaic, arguments[0], scan.argument))
                return false;
            break;
        case 'w':
            (void)!std::sscanf(scan.argument, "%d,%d", &app.frame.window_width,
                               &app.frame.window_height);
            break;
        default:
            print_usage(arguments[0]);
            return false;
        }
    }
    return true;
}

} // namespace vimbo
