#pragma once

#include "jobs/evaluation.hpp"
#include "mosaic/mosaic.hpp"
#include "ui/frame_state.hpp"

namespace vimbo
{

/// The Evaluation panel, one cell of the row that is being laid out: start and
/// stop buttons, options, and the output box. `source_text` is the edited text.
void evaluation_panel(frame_state &frame, evaluation_state &evaluation, mosaic_state &mosaic,
                      const char *source_text);

} // namespace vimbo
