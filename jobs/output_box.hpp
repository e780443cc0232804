// The box that shows what a run of the evaluator prints. The operator may write into
// it; the next run takes the place of it all.
#pragma once

#include "ui/nuklear.hpp"

#include <span>
#include <string_view>

struct nk_context;

namespace vimbo
{

/// All zero: at the text's beginning. Main thread only.
struct output_box_state {
    nk_text_edit edit; // its text is the one that the box is laid out with
    bool wants_end;    // the next layout scrolls to the text's last line
};

/// The box, in the row that is being laid out; it edits the zero-terminated text in
/// place. A double click on a line that names one of the source, as errors do, gives
/// that line's number; otherwise 0.
int output_box(nk_context *context, output_box_state &box, std::span<char> text);

/// More lines than a source has.
inline constexpr int most_named_line = 1000000;

/// N, at most that many, of the first ":N:" in the text; 0 when there is none.
int named_line(std::string_view text);

} // namespace vimbo
