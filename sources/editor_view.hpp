// What of its text an edit box shows: the box's measures, and its scrolling.
#pragma once

#include "ui/nuklear.hpp"

#include <cstddef>

namespace vimbo
{

/// An edit box, as the toolkit divides its bounds.
struct editor_view {
    struct nk_rect bounds;
    struct nk_rect area;  // where text is seen
    float scrollbar_left; // from where on the scrollbar is, if there is one
    float row_height;
    int rows; // that are seen whole, at least one
};

/// The view of a box of several lines that the toolkit's style makes.
editor_view view_of(const nk_context *context, const struct nk_rect &bounds);

/// True when there are more rows than are seen at once.
bool is_scrollable(const nk_text_edit &edit, const editor_view &view);

/// Scrolls by so many pixels, as far as there is text. True when it moved.
bool scroll_by(nk_text_edit &edit, const editor_view &view, const nk_user_font &font,
               struct nk_vec2 pixels);

/// Scrolls so that the cursor is seen. The toolkit follows it by one row and a
/// quarter of the width, however far it went.
void show_cursor(nk_text_edit &edit, const editor_view &view, const nk_user_font &font);

/// Byte of the character that a point of the box lies on, or is nearest to; with
/// `between` the place between characters that is nearest.
std::size_t byte_at_point(const nk_text_edit &edit, const editor_view &view,
                          const nk_user_font &font, struct nk_vec2 point, bool between);

} // namespace vimbo
