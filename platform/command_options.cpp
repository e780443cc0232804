// For systems whose C library has getopt.
#include "platform/command_options.hpp"

#include <getopt.h>

namespace vimbo
{

int next_option(option_scan &scan)
{
    if (!scan.begun)
        optind = 0; // getopt starts over
    scan.begun = true;
    opterr = 0; // getopt prints nothing of its own
    const int letter = getopt(scan.argument_count, scan.arguments, scan.letters);
    scan.argument = optarg;
    scan.first_operand = optind;
    return letter;
}

} // namespace vimbo
