#include "render/kept_picture.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <utility>

namespace vimbo
{

namespace
{

using seconds = std::chrono::duration<double>;
using steady_clock = std::chrono::steady_clock;

constexpr double frame_time = 1.0 / 30.0;
constexpr double slice_time = 0.008;
constexpr std::int32_t first_slice = 8192;
constexpr std::int32_t least_slice = 1024;

static_assert(sizeof(picture_view) == sizeof(path_matrix) + sizeof(picture_area) + 12,
              "views are compared as bytes");

bool same_view(const picture_view &a, const picture_view &b)
{
    // As bytes, as a view that is no number has to equal itself.
    return std::memcmp(&a, &b, sizeof a) == 0; // NOLINT(bugprone-suspicious-memory-comparison)
}

// The window's rows run from the top down in memory, an offscreen picture's from
// the bottom up, and a driver that mirrors one of them rounds the other way: a
// path would cover other pixels now and then. Where it can be had, drawing
// offscreen upside down makes both alike.
bool is_upside_down()
{
    return GLEW_ARB_clip_control != 0;
}

void set_upside_down(bool on)
{
    if (is_upside_down())
        glClipControl(on ? GL_UPPER_LEFT : GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
}

// Where a row of the window lies in the layer.
GLint layer_row(const picture_layer &layer, GLint y)
{
    return is_upside_down() ? layer.target.height - y : y;
}

void begin_drawing(const picture_layer &layer)
{
    picture_area area = layer.view.area;
    area.y = std::min(layer_row(layer, area.y), layer_row(layer, area.y + area.height));
    glBindFramebuffer(GL_FRAMEBUFFER, layer.target.framebuffer);
    set_upside_down(true);
    begin_area(area);
}

void end_drawing()
{
    end_area();
    set_upside_down(false);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

bool restart(picture_layer &layer, const picture_view &view)
{
    if (!fit_offscreen(layer.target, view.window_width, view.window_height))
        return false;
    layer.view = view;
    layer.drawn = 0;
    begin_drawing(layer);
    clear_picture();
    end_drawing();
    return true;
}

bool can_go_on(const picture_layer &layer, const kept_picture &kept)
{
    return layer.target.framebuffer != 0 && same_view(layer.view, kept.wanted) &&
           layer.drawn <= kept.wanted_vertices;
}

// The layer that is on its way to what is wanted.
picture_layer &layer_under_way(kept_picture &kept)
{
    return can_go_on(kept.shown, kept) ? kept.shown : kept.next;
}

bool begin_picture(kept_picture &kept)
{
    if (can_go_on(kept.shown, kept) || can_go_on(kept.next, kept))
        return true;
    // A mosaic that is gone must not stand in for the one that is there.
    const bool nothing_stands_in =
        kept.shown.target.framebuffer == 0 ||
        kept.shown.view.mosaic_generation != kept.wanted.mosaic_generation;
    return restart(nothing_stands_in ? kept.shown : kept.next, kept.wanted);
}

void finish_picture(kept_picture &kept)
{
    if (!can_go_on(kept.shown, kept) && can_go_on(kept.next, kept) &&
        kept.next.drawn == kept.wanted_vertices)
        std::swap(kept.shown, kept.next);
}

double now()
{
    return seconds(steady_clock::now().time_since_epoch()).count();
}

// Aims the next slice at its time, in steps, as lines differ in what they cost.
void learn(kept_picture &kept, std::int32_t last_slice, double vertices, double time)
{
    constexpr double largest_step = 4;
    kept.vertices_per_second = vertices / std::max(time, 1e-9);
    const double aim = kept.vertices_per_second * slice_time;
    const double most = std::min(aim, last_slice * largest_step);
    kept.slice_vertices =
        static_cast<std::int32_t>(std::clamp(most, double{least_slice}, double{1 << 30}));
}

// What comes next is no longer the work of slices alone.
void end_batch(kept_picture &kept)
{
    glDeleteSync(kept.last_slice);
    kept.last_slice = nullptr;
    kept.batch_vertices = 0;
}

// Waits for the slice before this one. This one is left to the driver meanwhile: a
// software renderer sorts lines on one processor and draws them on all, which would
// have to idle in turn if each slice were waited for at once.
void time_slice(kept_picture &kept, std::int32_t vertices, double start)
{
    constexpr GLuint64 a_second = 1000000000;
    GLsync end = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    glFlush();
    const bool first = kept.last_slice == nullptr;
    if (first)
        kept.batch_start = start;
    else
        glClientWaitSync(kept.last_slice, 0, a_second);
    glDeleteSync(kept.last_slice);
    kept.last_slice = end;
    const double time = now() - kept.batch_start;
    // The last one's beginning counts without its vertices: rather too short a slice
    // than too long a frame. The first one alone tells something only when its
    // beginning takes too long.
    if (!first)
        learn(kept, vertices, static_cast<double>(kept.batch_vertices), time);
    else if (time > slice_time)
        learn(kept, vertices, vertices, time);
    kept.batch_vertices += vertices;
}

// Part of an axis in normalised device units that both pictures have, as pixels
// of each.
struct shared_stretch {
    GLint from[2];
    GLint to[2];
    bool empty;
};

struct axis {
    double scale, shift; // of the matrix
    GLint start;
    GLsizei length; // pixels
};

GLint pixel_of(const axis &along, double at)
{
    return along.start + static_cast<GLint>(std::lround((at + 1) / 2 * along.length));
}

shared_stretch share(const axis &old, const axis &now)
{
    const double ratio = now.scale / old.scale;
    const double first = std::clamp((-1 - now.shift) / ratio + old.shift, -1.0, 1.0);
    const double last = std::clamp((1 - now.shift) / ratio + old.shift, -1.0, 1.0);
    // False, too, for what a zoom beyond all numbers gives.
    if (!(first < last) || !std::isfinite(ratio))
        return {{}, {}, true};
    const auto moved = [&](double at) { return ratio * (at - old.shift) + now.shift; };
    return {{pixel_of(old, first), pixel_of(old, last)},
            {pixel_of(now, moved(first)), pixel_of(now, moved(last))},
            false};
}

axis horizontal(const picture_view &view)
{
    return {view.matrix.element[0], view.matrix.element[12], view.area.x, view.area.width};
}

axis vertical(const picture_view &view)
{
    return {view.matrix.element[5], view.matrix.element[13], view.area.y, view.area.height};
}

// All of an axis, as it is.
shared_stretch whole(const axis &along)
{
    const GLint end = along.start + along.length;
    return {{along.start, end}, {along.start, end}, false};
}

GLint length(const GLint (&stretch)[2])
{
    return stretch[1] - stretch[0];
}

void copy_to_window(const picture_layer &layer, const shared_stretch &x, const shared_stretch &y,
                    GLenum filter)
{
    glBindFramebuffer(GL_READ_FRAMEBUFFER, layer.target.framebuffer);
    glBlitFramebuffer(x.from[0], layer_row(layer, y.from[0]), x.from[1],
                      layer_row(layer, y.from[1]), x.to[0], y.to[0], x.to[1], y.to[1],
                      GL_COLOR_BUFFER_BIT, filter);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
}

// The picture before, moved and scaled to the wanted view.
void show_stand_in(const kept_picture &kept)
{
    clear_picture();
    const shared_stretch x = share(horizontal(kept.shown.view), horizontal(kept.wanted));
    const shared_stretch y = share(vertical(kept.shown.view), vertical(kept.wanted));
    if (x.empty || y.empty)
        return;
    // What is only moved can be copied as it is.
    const bool scaled = length(x.from) != length(x.to) || length(y.from) != length(y.to);
    copy_to_window(kept.shown, x, y, scaled ? GL_LINEAR : GL_NEAREST);
}

} // namespace

void begin_area(const picture_area &area)
{
    glViewport(area.x, area.y, area.width, area.height);
    glScissor(area.x, area.y, area.width, area.height);
    glEnable(GL_SCISSOR_TEST);
    glDisable(GL_BLEND);
}

void end_area()
{
    glDisable(GL_SCISSOR_TEST);
}

bool want_picture(kept_picture &kept, const picture_source &source, const picture_view &view,
                  std::int32_t vertices)
{
    kept.wanted = view;
    kept.wanted_vertices = vertices;
    end_batch(kept);
    if (!begin_picture(kept)) {
        // Without one of the layers the other is of no use, and nothing of it is
        // to be drawn between frames.
        delete_offscreen(kept.shown.target);
        delete_offscreen(kept.next.target);
        return false;
    }
    finish_picture(kept);
    const double missing = vertices - layer_under_way(kept).drawn;
    const bool too_many =
        kept.vertices_per_second > 0 && missing > kept.vertices_per_second * frame_time;
    const double start = now();
    while (is_unfinished(kept) && !too_many && now() - start < frame_time)
        draw_slice(kept, source);
    return true;
}

bool is_unfinished(const kept_picture &kept)
{
    const bool stands =
        same_view(kept.shown.view, kept.wanted) && kept.shown.drawn == kept.wanted_vertices;
    return kept.shown.target.framebuffer != 0 && !stands;
}

void draw_slice(kept_picture &kept, const picture_source &source)
{
    picture_layer &layer = layer_under_way(kept);
    const std::int32_t missing = kept.wanted_vertices - layer.drawn;
    const std::int32_t count =
        std::min(missing, kept.slice_vertices > 0 ? kept.slice_vertices : first_slice);
    const double start = now();
    begin_drawing(layer);
    // From the last vertex that is drawn: the first segment starts there.
    const std::int32_t first = std::max(layer.drawn - 1, 0);
    draw_path_range(source.program, kept.wanted.matrix, source.mosaic.mosaic_vao, first,
                    layer.drawn + count - first, mosaic_colours);
    end_drawing();
    if (count >= least_slice)
        time_slice(kept, count, start);
    layer.drawn += count;
    finish_picture(kept);
}

void show_picture(const kept_picture &kept)
{
    const bool stands = same_view(kept.shown.view, kept.wanted);
    begin_area(kept.wanted.area);
    if (stands)
        copy_to_window(kept.shown, whole(horizontal(kept.wanted)), whole(vertical(kept.wanted)),
                       GL_NEAREST);
    else
        show_stand_in(kept);
    end_area();
}

} // namespace vimbo
