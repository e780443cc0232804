#include "tests/gl/gl_rig.hpp"
#include "tests/support/x_server.hpp"

#include <cstdlib>

namespace rig
{

void open_display()
{
    static const x_server screen(640, 480);
    setenv("DISPLAY", screen.name().c_str(), 1);
}

} // namespace rig
