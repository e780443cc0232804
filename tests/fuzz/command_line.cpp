// Any arguments, one a line.
#include "app/command_line.hpp"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    std::vector<std::string> arguments = {"the-program", ""};
    for (std::size_t i = 0; i < size && data[i] != '\0'; ++i)
        if (data[i] == '\n')
            arguments.emplace_back();
        else
            arguments.back() += static_cast<char>(data[i]);
    std::vector<char *> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    static const auto app = std::make_unique<vimbo::app_state>();
    optind = 0; // getopt starts over
    vimbo::read_command_line(*app, static_cast<int>(arguments.size()), pointers.data());
    if (strnlen(app->mosaic.tray_directory, vimbo::tray_directory_capacity) ==
        vimbo::tray_directory_capacity)
        std::abort();
    return 0;
}
