#include "render/slice_pace.hpp"

#include "ui/frame_state.hpp"

#include <algorithm>
#include <chrono>

namespace vimbo
{

namespace
{

constexpr std::int32_t first_slice = 8192;
constexpr std::int32_t least_slice = 1024; // shorter ones tell nothing

// Aims the next slice at its time, in steps, as lines differ in what they cost.
void learn(slice_pace &pace, std::int32_t last_slice, double vertices, double time)
{
    constexpr double largest_step = 4;
    pace.vertices_per_second = vertices / std::max(time, 1e-9);
    const double aim = pace.vertices_per_second * slice_time;
    const double most = std::min(aim, last_slice * largest_step);
    pace.slice_vertices =
        static_cast<std::int32_t>(std::clamp(most, double{least_slice}, double{1 << 30}));
}

} // namespace

double pace_clock()
{
    using seconds = std::chrono::duration<double>;
    return seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::int32_t next_slice(const slice_pace &pace, std::int32_t missing)
{
    return std::min(missing, pace.slice_vertices > 0 ? pace.slice_vertices : first_slice);
}

bool exceeds_slice(const slice_pace &pace, std::int32_t missing)
{
    return pace.vertices_per_second > 0 && missing > pace.vertices_per_second * slice_time;
}

bool exceeds_frame(const slice_pace &pace, std::int32_t missing)
{
    return pace.vertices_per_second > 0 && missing > pace.vertices_per_second * frame_time;
}

// Waits for the slice before this one. This one is left to the driver meanwhile: a
// software renderer sorts lines on one processor and draws them on all, which would
// have to idle in turn if each slice were waited for at once.
void time_slice(slice_pace &pace, std::int32_t vertices, double start)
{
    if (vertices < least_slice)
        return;
    constexpr GLuint64 a_second = 1000000000;
    GLsync fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    glFlush();
    const bool first = pace.last_fence == nullptr;
    if (first)
        pace.batch_start = start;
    else
        glClientWaitSync(pace.last_fence, 0, a_second);
    glDeleteSync(pace.last_fence);
    pace.last_fence = fence;
    const double time = pace_clock() - pace.batch_start;
    // The last one's beginning counts without its vertices: rather too short a slice
    // than too long a frame. The first one alone tells something only when its
    // beginning takes too long.
    if (!first)
        learn(pace, vertices, static_cast<double>(pace.batch_vertices), time);
    else if (time > slice_time)
        learn(pace, vertices, vertices, time);
    pace.batch_vertices += vertices;
}

void end_batch(slice_pace &pace)
{
    glDeleteSync(pace.last_fence);
    pace.last_fence = nullptr;
    pace.batch_vertices = 0;
}

} // namespace vimbo
