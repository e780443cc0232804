#include "render/picture_area.hpp"

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

} // namespace vimbo
