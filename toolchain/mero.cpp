// The evaluator's stand-in: compiles a source, or builds a mosaic from it.
//
//   mero [-S [-r]] FILE            evaluate: print a summary, or with -r the moves
//   mero [-c] -s UNIT FILE MOSAIC  integrate: UNIT in micrometres, -c to centre
//
// All output, errors too, goes to standard output, where the one who started it
// reads it.
#include "platform/command_options.hpp"
#include "platform/program_start.hpp"
#include "toolchain/mosaic_writer.hpp"
#include "toolchain/move_follower.hpp"
#include "toolchain/path_summary.hpp"
#include "toolchain/source_evaluator.hpp"
#include "toolchain/stop_watch.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace
{

using namespace toolchain;

constexpr double default_unit_um = 35.0;

enum status { status_ok = 0, status_error = 1, status_nothing_done = 3 };

struct request {
    bool evaluate = false; // -S
    bool print_moves = false;
    bool centre = false;
    std::optional<double> unit_um;
    std::string source;
    std::string mosaic; // empty: nothing is integrated
};

int fail(const std::string &message)
{
    std::printf("mero: %s\n", message.c_str());
    return status_error;
}

int usage()
{
    return fail("usage: mero [-S [-r]] FILE | mero [-c] -s UNIT FILE MOSAIC");
}

std::optional<double> parse_unit(const char *text)
{
    char *end = nullptr;
    const double unit = std::strtod(text, &end);
    if (end == text || *end != '\0' || !std::isfinite(unit) || unit <= 0)
        return std::nullopt;
    return unit;
}

std::optional<request> parse(int argument_count, char *arguments[])
{
    request wanted;
    vimbo::option_scan scan = {
        .argument_count = argument_count, .arguments = arguments, .letters = "Srcs:"};
    int option = 0;
    while ((option = next_option(scan)) != vimbo::no_more_options) {
        switch (option) {
        case 'S':
            wanted.evaluate = true;
            break;
        case 'r':
            wanted.print_moves = true;
            break;
        case 'c':
            wanted.centre = true;
            break;
        case 's':
            wanted.unit_um = parse_unit(scan.argument);
            if (!wanted.unit_um)
                return std::nullopt;
            break;
        default:
            return std::nullopt;
        }
    }
    const int files = argument_count - scan.first_operand;
    const bool integrate = wanted.unit_um.has_value();
    if (files != (integrate ? 2 : 1) || (integrate && (wanted.evaluate || wanted.print_moves)) ||
        (wanted.centre && !integrate) || (wanted.print_moves && !wanted.evaluate))
        return std::nullopt;
    wanted.source = arguments[scan.first_operand];
    if (integrate)
        wanted.mosaic = arguments[scan.first_operand + 1];
    return wanted;
}

std::optional<std::string> read_file(const std::string &name)
{
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || std::filesystem::is_directory(path) ||
        (file.peek() != std::ifstream::traits_type::eof() && !(text << file.rdbuf())))
        return std::nullopt;
    return text.str();
}

double in_mm(double length)
{
    return length / vimbo::length_units_per_mm;
}

void print_summary(const move_list &moves, const path_summary &path)
{
    const std::size_t count = moves.move_count();
    std::printf("%zu moves: %zu marks, %zu jumps\n", count, moves.mark_count(),
                count - moves.mark_count());
    std::printf("marks %.3f mm, jumps %.3f mm\n", in_mm(path.mark_length),
                in_mm(path.length - path.mark_length));
    std::printf("x %.3f to %.3f mm, y %.3f to %.3f mm\n", in_mm(path.extents.left),
                in_mm(path.extents.right), in_mm(path.extents.bottom), in_mm(path.extents.top));
}

void print_moves(const move_list &moves)
{
    for (const vimbo::path_vertex &move : moves.moves())
        std::printf("%s %.6f %.6f\n", (move.y & 1) != 0 ? "mark" : "jump", in_mm(move.x),
                    in_mm(move.y & ~1));
}

// Makes the source's moves, while `take` has them as they come. Gives the status
// to end with, if that is to be the end.
std::optional<int> make_moves(const request &wanted, move_list &moves,
                              const move_follower::taker &take)
{
    const std::optional<std::string> source = read_file(wanted.source);
    if (!source)
        return fail("cannot read " + wanted.source);
    std::string error;
    {
        move_follower follower(moves, take);
        error = evaluate({*source, wanted.unit_um.value_or(default_unit_um)}, moves);
    }
    if (!error.empty())
        return fail(error);
    if (moves.mark_count() > 0)
        return std::nullopt;
    std::puts("nothing was marked");
    return status_nothing_done;
}

int run_evaluation(const request &wanted)
{
    move_list moves(wanted.print_moves ? move_use::kept : move_use::handed_on);
    path_summary path;
    const auto add_to_summary = [&](std::span<const vimbo::path_vertex> some) {
        add_moves(path, some);
    };
    if (const std::optional<int> end = make_moves(wanted, moves, add_to_summary))
        return *end;
    if (wanted.print_moves)
        print_moves(moves);
    else
        print_summary(moves, path);
    return status_ok;
}

int run_integration(const request &wanted)
{
    mosaic_writer mosaic(wanted.mosaic);
    if (!mosaic.fault().empty())
        return fail(mosaic.fault());
    move_list moves(wanted.centre ? move_use::kept : move_use::handed_on);
    path_summary path;
    // What is to be centred can be written only when all of it is known.
    const auto take = [&](std::span<const vimbo::path_vertex> some) {
        if (wanted.centre)
            add_moves(path, some);
        else
            mosaic.append(some);
    };
    if (const std::optional<int> end = make_moves(wanted, moves, take))
        return *end;
    if (wanted.centre) {
        moves.centre(path.extents);
        mosaic.append(moves.moves());
    }
    const std::string fault = mosaic.finish();
    if (!fault.empty())
        return fail(fault);
    std::printf("%zu moves written to %s\n", moves.move_count(), wanted.mosaic.c_str());
    return status_ok;
}

} // namespace

int main(int argument_count, char *arguments[])
{
    vimbo::start_program(argument_count, arguments);
    const std::optional<request> wanted = parse(argument_count, arguments);
    if (!wanted)
        return usage();
    watch_for_stop(status_nothing_done);
    return wanted->mosaic.empty() ? run_evaluation(*wanted) : run_integration(*wanted);
}
