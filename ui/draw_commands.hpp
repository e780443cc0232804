// What Nuklear is to draw after a layout.
#pragma once

struct nk_buffer;
struct nk_context;

namespace vimbo
{

/// Completes the layout's drawing commands and gives the buffer that holds them.
/// Every layout has to be asked for them, shown or not: Nuklear takes its lists of
/// popups apart only then, and left standing, they would join into a circle.
const nk_buffer &complete_draw_commands(nk_context *context);

} // namespace vimbo
