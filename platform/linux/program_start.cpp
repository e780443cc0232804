#include "platform/program_start.hpp"

namespace vimbo
{

void start_program(int & /*argument_count*/, char **& /*arguments*/)
{
    // All of it is so from the start.
}

} // namespace vimbo
