// A picture of how cost grows with the mosaic.
#pragma once

#include <string>
#include <vector>

namespace bench
{

/// What a mosaic of so many points costs; times in seconds, memory in MiB.
struct growth_row {
    double points;
    double load;   // reading it
    double rest;   // work of a frame that changes nothing
    double pan;    // frame to frame while the picture is dragged
    double replay; // frame to frame while it is replayed
    double memory; // of the whole program, the driver's buffers included
};

/// Draws the rows as an SVG file, both axes logarithmic. Throws when it cannot be
/// written.
void plot_growth(const std::string &path, const std::vector<growth_row> &rows);

} // namespace bench
