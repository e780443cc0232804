#include "mosaic/mosaic.hpp"

#include "ui/fixed_text.hpp"
#include "ui/flags.hpp"

namespace vimbo
{

void format_mosaic_directory(const mosaic_state &mosaic, std::span<char, mosaic_path_capacity> out)
{
    format_text(out, "%s/_mosaics", mosaic.tray_directory);
}

void format_mosaic_path(const mosaic_state &mosaic, std::span<char, mosaic_path_capacity> out)
{
    char directory[mosaic_path_capacity];
    format_mosaic_directory(mosaic, directory);
    format_text(out, "%s/%d.mmv", directory, mosaic.mosaic_index);
}

void format_mosaic_path(mosaic_state &mosaic)
{
    format_mosaic_path(mosaic, mosaic.mosaic_path);
}

void request_mosaic_reload(frame_state &frame)
{
    frame.frame_flags |= frame_flag::reload_mosaic;
}

} // namespace vimbo
