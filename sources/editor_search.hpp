#pragma once

#include "ui/nuklear.hpp"

namespace vimbo
{

/// With F3 pressed, and a text selected, selects the next place where that text
/// stands; with Shift the one before. Beyond the text's end it goes on at the other.
void search_by_keys(nk_context *context, nk_text_edit &edit);

} // namespace vimbo
