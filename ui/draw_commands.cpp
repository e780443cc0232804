#include "ui/draw_commands.hpp"

#include "ui/nuklear.hpp"

namespace vimbo
{

const nk_buffer &complete_draw_commands(nk_context *context)
{
    nk__begin(context);
    return context->memory;
}

} // namespace vimbo
