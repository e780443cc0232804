// The options of a command line, in the form that the system's users know. Main
// thread only.
#pragma once

namespace vimbo
{

/// What next_option gives behind the last option, and for one that is unknown or
/// lacks its argument.
inline constexpr int no_more_options = -1;
inline constexpr int wrong_option = '?';

/// A command line that is being read; one at a time. Its first three members are
/// the caller's to set, the others are next_option's.
struct option_scan {
    int argument_count; // as main has them, the program's name first
    char *const *arguments;
    const char *letters; // of the options; a ':' behind one that takes an argument

    const char *argument = nullptr; // of the option just given; null where it takes none
    int first_operand = 0;          // what follows the options, once there are no more
    bool begun = false;
};

/// Gives the letter of the next option, or one of the two above. Prints nothing,
/// and copies nothing: `argument` points into the arguments, whose order it may
/// change so that the operands come last.
int next_option(option_scan &scan);

} // namespace vimbo
