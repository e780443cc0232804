#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// True when the window that is being laid out takes mouse and keys: not while
/// one of its lists is open, which takes them also where it covers the window.
inline bool takes_input(const nk_context *context)
{
    return (context->current->layout->flags & NK_WINDOW_ROM) == 0;
}

} // namespace vimbo
