#include "bench/growth_plot.hpp"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace bench
{

namespace
{

constexpr double plot_width = 560;
constexpr double plot_height = 360;
constexpr double margin_left = 80;
constexpr double margin_top = 40;
constexpr double margin_right = 30;
constexpr double margin_bottom = 60;

// Powers of ten at the axes' ends.
constexpr int least_points = 4;
constexpr int most_points = 8;
constexpr int least_value = -2;
constexpr int most_value = 4;

struct series {
    const char *name;
    const char *colour;
    double growth_row::*value;
    double scale; // to milliseconds, or MiB as they are
};

constexpr series all_series[] = {
    {"load, ms", "#b03030", &growth_row::load, 1e3},
    {"frame at rest, ms", "#3060b0", &growth_row::rest, 1e3},
    {"panning, frame to frame, ms", "#2f8f4f", &growth_row::pan, 1e3},
    {"replaying, frame to frame, ms", "#b08020", &growth_row::replay, 1e3},
    {"memory, MiB", "#707070", &growth_row::memory, 1},
};

double x_of(double power)
{
    return margin_left + plot_width * (power - least_points) / (most_points - least_points);
}

double y_of(double power)
{
    return margin_top + plot_height * (most_value - power) / (most_value - least_value);
}

std::string text(double x, double y, const char *anchor, const std::string &content)
{
    char line[512];
    std::snprintf(line, sizeof line, "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">%s</text>\n",
                  x, y, anchor, content.c_str());
    return line;
}

std::string line(double x1, double y1, double x2, double y2)
{
    char element[512];
    std::snprintf(element, sizeof element,
                  "<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" stroke=\"#dddddd\"/>\n",
                  x1, y1, x2, y2);
    return element;
}

std::string power_of_ten(int power)
{
    return "10<tspan dy=\"-5\" font-size=\"10\">" + std::to_string(power) + "</tspan>";
}

std::string axes()
{
    std::string drawn;
    for (int power = least_points; power <= most_points; ++power) {
        drawn += line(x_of(power), y_of(least_value), x_of(power), y_of(most_value));
        drawn += text(x_of(power), y_of(least_value) + 20, "middle", power_of_ten(power));
    }
    for (int power = least_value; power <= most_value; ++power) {
        drawn += line(x_of(least_points), y_of(power), x_of(most_points), y_of(power));
        drawn += text(x_of(least_points) - 10, y_of(power) + 4, "end", power_of_ten(power));
    }
    return drawn + text(x_of(6), y_of(least_value) + 44, "middle", "points of the mosaic");
}

std::string curve(const series &drawn, const std::vector<growth_row> &rows)
{
    std::string points;
    double last = 0;
    for (const growth_row &row : rows) {
        last = std::log10(row.*drawn.value * drawn.scale);
        char point[64];
        std::snprintf(point, sizeof point, "%.1f,%.1f ", x_of(std::log10(row.points)), y_of(last));
        points += point;
    }
    return std::string("<polyline fill=\"none\" stroke-width=\"2\" stroke=\"") + drawn.colour +
           "\" points=\"" + points + "\"/>\n";
}

std::string legend()
{
    std::string drawn;
    double y = margin_top + 14;
    for (const series &entry : all_series) {
        drawn += std::string("<g fill=\"") + entry.colour + "\">" +
                 text(margin_left + 12, y, "start", entry.name) + "</g>\n";
        y += 16;
    }
    return drawn;
}

} // namespace

void plot_growth(const std::string &path, const std::vector<growth_row> &rows)
{
    std::ofstream file(path);
    file << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\""
         << margin_left + plot_width + margin_right << "\" height=\""
         << margin_top + plot_height + margin_bottom
         << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
         << axes();
    for (const series &drawn : all_series)
        file << curve(drawn, rows);
    file << legend() << "</svg>\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace bench
