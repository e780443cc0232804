// The editor's mouse: presses, double and triple ones, selections that are dragged,
// also beyond the box, and the wheel. The toolkit's own counts from the text's
// beginning for each row and character, takes no press beside the text, and stops
// at the box's edge.
#pragma once

#include "sources/editor_view.hpp"
#include "sources/text_places.hpp"
#include "ui/nuklear.hpp"

namespace vimbo
{

/// All zero: no press yet. Main thread only.
struct editor_mouse {
    int presses;       // one after the other at one place: 1 character, 2 word, 3 line
    bool dragging;     // from the press to the release
    text_range anchor; // what the press selected, and the drag keeps
};

/// Gives the box the focus when it is pressed, and moves cursor, selection and
/// scrolling as the mouse says. `seconds` have passed since the last layout that
/// was seen; 0 in one that is not.
void follow_mouse(nk_context *context, nk_text_edit &edit, const editor_view &view,
                  editor_mouse &mouse, float seconds);

/// Lays the box out; the toolkit then sees of the mouse only what it does to the
/// scrollbar.
void lay_out_edit(nk_context *context, nk_text_edit &edit, const editor_view &view,
                  const editor_mouse &mouse);

} // namespace vimbo
