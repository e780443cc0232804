// A font whose characters are all of one width, so that places can be worked out by hand.
#pragma once

#include "ui/nuklear.hpp"
#include "ui/utf8.hpp"

#include <cstddef>

namespace rig
{

/// Width of each character, in pixels.
inline constexpr float even_glyph = 8;

/// The font, 16 pixels high.
inline nk_user_font even_font()
{
    nk_user_font font = {};
    font.height = 16;
    font.width = [](nk_handle, float, const char *text, int length) {
        return even_glyph *
               static_cast<float>(vimbo::character_count({text, static_cast<std::size_t>(length)}));
    };
    return font;
}

} // namespace rig
