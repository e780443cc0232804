#include "mosaic/mosaic.hpp"

#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"

namespace vimbo
{

void format_mosaic_path(mosaic_state &mosaic)
{
    format_text(mosaic.mosaic_path, "%s/_mosaics/%d.mmv", mosaic.tray_directory,
                mosaic.mosaic_index);
}

void request_mosaic_reload(frame_state &frame)
{
    frame.frame_flags |= frame_flag::reload_mosaic;
}

} // namespace vimbo
