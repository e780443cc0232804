#include "render/picture_area.hpp"

#include <cmath>

namespace vimbo
{

void begin_area(const picture_area &area)
{
    glViewport(area.x, area.y, area.width, area.height);
    glScissor(area.x, area.y, area.width, area.height);
    glEnable(GL_SCISSOR_TEST);
    glDisable(GL_BLEND);
}

void end_area()
{
    glDisable(GL_SCISSOR_TEST);
}

double driver_grid()
{
    GLint bits = 0;
    glGetIntegerv(GL_SUBPIXEL_BITS, &bits);
    return std::ldexp(1.0, -bits);
}

} // namespace vimbo
