#include "render/crossed_pixels.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace vimbo
{

namespace
{

constexpr double most_off = 1.0 / 16; // beyond it, next to nothing is certain

struct pixel_point {
    double x;
    double y;
};

// A line of pixels, not steeper than a diagonal once x and y have changed places
// where it is `turned`. What is closer to an edge than rounding can move it is left open.
struct flat_line {
    pixel_point start;
    pixel_point end;
    double slope;
    double off;    // how far an end may be beside its place, along either axis,
    double margin; // and how far the line's height
    int rows;      // of the picture; its columns where it is turned
    bool turned;
};

const pixel_point &left_end(const flat_line &line)
{
    return line.end.x < line.start.x ? line.end : line.start;
}

const pixel_point &right_end(const flat_line &line)
{
    return line.end.x < line.start.x ? line.start : line.end;
}

double height_at(const flat_line &line, double x)
{
    return line.start.y + (x - line.start.x) * line.slope;
}

// How far a point is outside of a pixel's diamond; negative inside. Rounding may move it
// by twice as much as along an axis.
double beyond_diamond(const pixel_point &at, int column, int row)
{
    return std::fabs(at.x - column - 0.5) + std::fabs(at.y - row - 0.5) - 0.5;
}

// std::floor costs more than all that is done with it.
int pixel_at(double position)
{
    const int whole = static_cast<int>(position);
    return whole > position ? whole - 1 : whole;
}

// The first column whose centre is not before this place, and the last not behind it.
int first_column(double x)
{
    return -pixel_at(0.5 - x);
}

int last_column(double x)
{
    return pixel_at(x - 0.5);
}

// Cuts what lies outside of the picture off, as drivers do. False when nothing is left.
bool clip_axis(pixel_point &start, pixel_point &end, double pixel_point::*axis, double size)
{
    const pixel_point a = start;
    const pixel_point b = end;
    if (std::min(a.*axis, b.*axis) >= 0 && std::max(a.*axis, b.*axis) <= size)
        return true;
    const double span = b.*axis - a.*axis;
    const auto at = [&](double edge) {
        const double share = (edge - a.*axis) / span;
        pixel_point point = {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
        point.*axis = edge;
        return point;
    };
    if (std::max(a.*axis, b.*axis) < 0 || std::min(a.*axis, b.*axis) > size)
        return false;
    if (a.*axis < 0 || a.*axis > size)
        start = at(a.*axis < 0 ? 0 : size);
    if (b.*axis < 0 || b.*axis > size)
        end = at(b.*axis < 0 ? 0 : size);
    return true;
}

void cover(covered_pixels &covered, const flat_line &line, int row, int first, int last)
{
    if (!line.turned) {
        cover_row(covered, row, first, last);
        return;
    }
    for (int column = first; column <= last; ++column)
        cover_row(covered, column, row, row);
}

// The pixel that the line starts in, where it leaves that one's diamond from inside.
// From right below or above a centre llvmpipe leaves it out on the way to the left;
// diagonals may be taken for flat or for steep.
void cover_start(covered_pixels &covered, const flat_line &line)
{
    const int column = pixel_at(line.start.x);
    const int row = pixel_at(line.start.y);
    if (std::fabs(line.start.x - column - 0.5) >= line.off &&
        std::fabs(line.start.y - row - 0.5) >= line.off &&
        beyond_diamond(line.start, column, row) <= -2 * line.off &&
        beyond_diamond(line.end, column, row) >= 2 * line.off)
        cover(covered, line, row, column, column);
}

// Of the columns from `first` to `last`, whose centres the line passes, those in which
// it does so in this row.
void cover_in_row(covered_pixels &covered, const flat_line &line, int row, int first, int last)
{
    const double from = row + line.margin;
    const double to = row + 1 - line.margin;
    const double heights[] = {height_at(line, first + 0.5), height_at(line, last + 0.5)};
    if (std::min(heights[0], heights[1]) < from || std::max(heights[0], heights[1]) > to) {
        const double a = line.start.x + (from - line.start.y) / line.slope;
        const double b = line.start.x + (to - line.start.y) / line.slope;
        // Not so of a level line, which has no such places.
        if (!(std::fabs(a) < INT32_MAX && std::fabs(b) < INT32_MAX))
            return;
        first = std::max(first, first_column(std::min(a, b)));
        last = std::min(last, last_column(std::max(a, b)));
    }
    if (first <= last)
        cover(covered, line, row, first, last);
}

// True when the line has an end in the diamond of the pixel whose column it passes there,
// or so close to it that rounding decides.
bool ends_in_column(const flat_line &line, const pixel_point &end, int column)
{
    const int row = pixel_at(height_at(line, column + 0.5));
    return beyond_diamond(end, column, row) < 2 * line.off;
}

void cover_flat_line(covered_pixels &covered, const flat_line &line)
{
    cover_start(covered, line);
    const pixel_point &left = left_end(line);
    const pixel_point &right = right_end(line);
    int first = first_column(left.x + line.off);
    int last = last_column(right.x - line.off);
    if (first <= last && ends_in_column(line, left, first))
        ++first;
    if (first <= last && ends_in_column(line, right, last))
        --last;
    if (first > last)
        return;
    const int row = pixel_at(height_at(line, first + 0.5));
    const int last_row = pixel_at(height_at(line, last + 0.5));
    for (int at = std::max(std::min(row, last_row), 0);
         at <= std::min(std::max(row, last_row), line.rows - 1); ++at)
        cover_in_row(covered, line, at, first, last);
}

flat_line line_between(const covered_pixels &covered, pixel_point start, pixel_point end,
                       double off)
{
    const bool turned = std::fabs(end.x - start.x) < std::fabs(end.y - start.y);
    if (turned) {
        std::swap(start.x, start.y);
        std::swap(end.x, end.y);
    }
    const double slope = (end.y - start.y) / (end.x - start.x);
    const double margin = off * (1 + std::fabs(slope));
    return {start, end, slope, off, margin, turned ? covered.width : covered.height, turned};
}

void cover_line(covered_pixels &covered, pixel_point start, pixel_point end, double off)
{
    if (!clip_axis(start, end, &pixel_point::x, covered.width) ||
        !clip_axis(start, end, &pixel_point::y, covered.height))
        return;
    cover_flat_line(covered, line_between(covered, start, end, off));
}

// In the line's rows and columns; what lies beside the picture needs no covering.
bool are_covered(const covered_pixels &covered, const flat_line &line, int row, int first, int last)
{
    first = std::max(first, 0);
    last = std::min(last, (line.turned ? covered.height : covered.width) - 1);
    if (first > last)
        return true;
    if (!line.turned)
        return are_covered(covered, row, first, last);
    for (int column = first; column <= last; ++column)
        if (!are_covered(covered, column, row, row))
            return false;
    return true;
}

// An end, or where llvmpipe takes it to be, if that is farther to that side: an end in a
// diamond is moved along the line to the middle of its column, or of its row where the line
// may be taken for steep. Next to a corner that may be in the next pixel.
pixel_point farthest(const flat_line &line, const pixel_point &end, int side)
{
    constexpr double nearly_diagonal = 0.875;
    const int column = pixel_at(end.x);
    const int row = pixel_at(end.y);
    if (beyond_diamond(end, column, row) >= 2 * line.off)
        return end;
    double distance = std::max(side * (column + 0.5 - end.x), 0.0);
    if (std::fabs(line.slope) > nearly_diagonal)
        distance = std::max(distance, side * (row + 0.5 - end.y) / line.slope);
    return {end.x + side * distance, end.y + side * distance * line.slope};
}

// Those that it may cover: in each row the columns whose centres it passes there, and those
// of its ends. Twice what rounding can move it by, as diagonals may be taken for steep.
bool is_flat_line_hidden(const covered_pixels &covered, const flat_line &line)
{
    const double margin = 2 * line.margin;
    if (!(margin < 1)) // the line has no length
        return false;
    const pixel_point left = farthest(line, left_end(line), -1);
    const pixel_point right = farthest(line, right_end(line), 1);
    const int first_row = std::max(pixel_at(std::min(left.y, right.y) - margin), 0);
    const int last_row = std::min(pixel_at(std::max(left.y, right.y) + margin), line.rows - 1);
    for (int row = first_row; row <= last_row; ++row) {
        int first = pixel_at(left.x - line.off);
        int last = pixel_at(right.x + line.off);
        if (line.slope != 0) {
            const double a = left.x + (row - margin - left.y) / line.slope;
            const double b = left.x + (row + 1 + margin - left.y) / line.slope;
            if (std::min(a, b) > left.x)
                first = first_column(std::min({a, b, right.x + 1}));
            if (std::max(a, b) < right.x)
                last = last_column(std::max({a, b, left.x - 1}));
        }
        if (!are_covered(covered, line, row, first, last))
            return false;
    }
    return true;
}

// Cuts off what lies so far outside of the picture that rounding brings none of it back.
bool clip_beside(pixel_point &start, pixel_point &end, double pixel_point::*axis, double size)
{
    constexpr double beside = 1;
    start.*axis += beside;
    end.*axis += beside;
    const bool some_left = clip_axis(start, end, axis, size + 2 * beside);
    start.*axis -= beside;
    end.*axis -= beside;
    return some_left;
}

pixel_point place_of(const path_vertex &vertex, const path_projection &target)
{
    return {vertex.x * target.x.scale + target.x.shift, vertex.y * target.y.scale + target.y.shift};
}

} // namespace

bool is_line_hidden(const covered_pixels &covered, const path_vertex &from, const path_vertex &to,
                    double off, const path_projection &target)
{
    if (!(off < most_off))
        return false;
    pixel_point start = place_of(from, target);
    pixel_point end = place_of(to, target);
    if (!clip_beside(start, end, &pixel_point::x, covered.width) ||
        !clip_beside(start, end, &pixel_point::y, covered.height))
        return true;
    return is_flat_line_hidden(covered, line_between(covered, start, end, off));
}

void cover_crossed(covered_pixels &covered, std::span<const path_vertex> strip, double off,
                   const path_projection &target)
{
    if (!(off < most_off))
        return;
    pixel_point start = {};
    for (std::size_t i = 0; i < strip.size(); ++i) {
        const pixel_point end = place_of(strip[i], target);
        if (i > 0)
            cover_line(covered, start, end, off);
        start = end;
    }
}

} // namespace vimbo
