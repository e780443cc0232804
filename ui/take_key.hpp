#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// Nuklear has no Escape; this key of its own, which would turn an edit box into one
/// that can only be read, stands for it, and has to be taken before any box is laid out.
inline constexpr nk_keys escape_key = NK_KEY_TEXT_RESET_MODE;

/// True when the key was pressed, which no widget behind then sees.
inline bool take_key(nk_context *context, nk_keys key)
{
    const bool pressed = nk_input_is_key_pressed(&context->input, key) != 0;
    context->input.keyboard.keys[key].clicked = 0;
    return pressed;
}

} // namespace vimbo
