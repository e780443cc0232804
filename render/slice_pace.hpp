// How large a slice of a picture may be so that frames come in time: learnt from
// what the slices before it took, by fences in the GL command stream.
#pragma once

#include <GL/glew.h>

#include <cstdint>

namespace vimbo
{

/// Seconds that a slice should take.
inline constexpr double slice_time = 0.008;

/// All zero: nothing is known yet. Main thread only.
struct slice_pace {
    std::int32_t slice_vertices; // of the next slice; 0 before the first is timed
    double vertices_per_second;  // of the last timed slice; 0 before it

    /// The batch: slices without a frame between them. The last one's fence, null
    /// before the first; their vertices; and when they began, in seconds.
    GLsync last_fence;
    std::int64_t batch_vertices;
    double batch_start;
};

/// Seconds, from any fixed point in time.
double pace_clock();

/// How many of the missing vertices the next slice draws.
std::int32_t next_slice(const slice_pace &pace, std::int32_t missing);

/// True when these vertices are known to take longer than a slice, or a frame.
bool exceeds_slice(const slice_pace &pace, std::int32_t missing);
bool exceeds_frame(const slice_pace &pace, std::int32_t missing);

/// Ends a slice of so many vertices that was begun at `start`, and learns from the
/// one before it.
void time_slice(slice_pace &pace, std::int32_t vertices, double start);

/// Ends the batch: what comes next is no longer the work of slices alone.
void end_batch(slice_pace &pace);

} // namespace vimbo
