// Any text as a path in double quotes, closed or left open: a tool behind the shell
// must get it as it stands.
#include "platform/commands.hpp"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

std::string output_of(const std::string &command)
{
    FILE *stream = vimbo::open_command(command.c_str());
    if (stream == nullptr)
        std::abort();
    std::string output;
    for (int c = 0; (c = std::fgetc(stream)) != EOF;)
        output += static_cast<char>(c);
    vimbo::await_command_end(stream);
    if (vimbo::close_command(stream) != 0)
        std::abort();
    return output;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    constexpr std::size_t most = 4096; // as long as a path can be
    std::string path(reinterpret_cast<const char *>(data), size < most ? size : most);
    path.resize(path.find('\0') == std::string::npos ? path.size() : path.find('\0'));
    if (path.find('"') != std::string::npos)
        return 0; // the program refuses it
    // A stub whose output is its arguments, and no word of the shell's own.
    const std::string stub = "exec /usr/bin/printf '<%s>' \"";
    if (output_of(stub + path) != '<' + path + '>')
        std::abort();
    if (output_of(stub + path + "\" 'and more'") != '<' + path + "><and more>")
        std::abort();
    return 0;
}
