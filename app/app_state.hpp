#pragma once

#include "app/shown_panels.hpp"
#include "jobs/evaluation.hpp"
#include "mosaic/mosaic.hpp"
#include "render/kept_picture.hpp"
#include "render/path_buffer.hpp"
#include "render/preview_panel.hpp"
#include "render/tray_outline.hpp"
#include "sources/source_editor.hpp"
#include "sources/tray_bar.hpp"
#include "stats/stats_panel.hpp"
#include "ui/baked_font.hpp"
#include "ui/clipboard.hpp"
#include "ui/frame_state.hpp"
#include "ui/input_queue.hpp"

namespace vimbo
{

/// All that the program knows: the sum of what its panels and jobs own. As it is
/// made it is valid and idle, with the settings' defaults. It is too large for a
/// thread's stack. Main thread only.
struct app_state {
    frame_state frame;
    input_queue input;
    clipboard_state clipboard;
    baked_font font;
    tray_extent tray;
    mosaic_state mosaic;
    tray_bar_state bar;
    source_editor_state editor;
    evaluation_state evaluation;
    statistics_state statistics;
    preview_state preview;

    kept_picture picture;
    shown_panels panels;

    GLuint path_program; // 0 when its shaders failed: the preview stays empty
    path_buffer tray_outline;
};

} // namespace vimbo
