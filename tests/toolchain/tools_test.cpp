// The stand-ins for the tool chain's tools, as processes: what they print, the
// files they leave, how they end.
#include "platform/commands.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/texts.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <sstream>
#include <vector>

namespace
{

using namespace rig;

struct outcome {
    std::string output;
    int status;
};

outcome run(const std::string &command)
{
    FILE *stream = vimbo::open_command(command.c_str());
    if (stream == nullptr)
        return {"could not be started", -2};
    std::string output;
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stream)) > 0;)
        output.append(buffer, count);
    vimbo::await_command_end(stream);
    return {output, vimbo::close_command(stream)};
}

class Mero : public testing::Test
{
protected:
    outcome evaluate(const std::string &options, const std::string &source,
                     const std::string &mosaic = {})
    {
        write_file(place.file("source"), source);
        return run(std::string(VIMBO_MERO " ").append(options) + ' ' + place.file("source") + ' ' +
                   mosaic);
    }

    outcome integrate(const std::string &options, const std::string &source)
    {
        return evaluate(options, source, place.file("0.mmv"));
    }

    void expect_nothing_but_source_and_mosaic() const
    {
        for (const auto &entry : std::filesystem::directory_iterator(place.path()))
            EXPECT_TRUE(entry.path().filename() == "0.mmv" || entry.path().filename() == "source")
                << entry.path() << " was left";
    }

    const scratch_directory place;
};

constexpr const char *square = "jump(-1000, -1000) mark(1000, -1000) mark(1000, 1000)";

TEST_F(Mero, PrintsASummaryOfASource)
{
    const outcome result = evaluate("-S", square);
    EXPECT_EQ(result.output, "3 moves: 2 marks, 1 jumps\nmarks 140.000 mm, jumps 49.497 mm\n"
                             "x -35.000 to 35.000 mm, y -35.000 to 35.000 mm\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(Mero, PrintsTheMovesWhenRawOutputIsWanted)
{
    const outcome result = evaluate("-S -r", "jump(1, 2) mark(-1, -2)");
    EXPECT_EQ(result.output, "jump 0.035000 0.070000\nmark -0.035000 -0.070000\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(Mero, WritesAMosaicInItsUnit)
{
    const outcome result = integrate("-s 1000", "jump(1, 2) mark(3, 4)");
    EXPECT_EQ(result.output, "2 moves written to " + place.file("0.mmv") + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(read_file(place.file("0.mmv")), mosaic_bytes({{256000, 512000}, {768000, 1024001}}));
}

TEST_F(Mero, TakesWholeNumbersOthersAndTextsOfNumbersInAnyOrder)
{
    EXPECT_EQ(integrate("-s 1000", "jump(1, '2') mark('0x10', 4.0) mark(0.5, -3) jump('0.25', 0)\n"
                                   "mark(-0.0, 7) mark(2, 1e1)")
                  .status,
              0);
    EXPECT_EQ(read_file(place.file("0.mmv")), mosaic_bytes({{256000, 512000},
                                                            {4096000, 1024001},
                                                            {128000, -768000 + 1},
                                                            {64000, 0},
                                                            {0, 1792001},
                                                            {512000, 2560001}}));
}

TEST_F(Mero, CentersAMosaic)
{
    EXPECT_EQ(integrate("-c -s 1000", "jump(10, 10) mark(12, 14)").status, 0);
    EXPECT_EQ(read_file(place.file("0.mmv")), mosaic_bytes({{-256000, -512000}, {256000, 512001}}));
}

TEST_F(Mero, WritesAndCountsManyMovesWithoutAGapBetweenItsThreads)
{
    // More than are handed on at a time, to and fro: a lost one would show.
    const char *source = "for i = 1, 100000 do mark(1000 * (i % 2), 7) end jump(0, 0)";
    std::vector<vimbo::path_vertex> points;
    for (int i = 1; i <= 100000; ++i)
        points.push_back({256000 * (i % 2), 1793});
    points.push_back({0, 0});
    EXPECT_EQ(integrate("-s 1", source).status, 0);
    EXPECT_EQ(read_file(place.file("0.mmv")), mosaic_bytes(points));
    EXPECT_EQ(evaluate("-S", source).output, "100001 moves: 100000 marks, 1 jumps\n"
                                             "marks 3500000.001 mm, jumps 0.245 mm\n"
                                             "x 0.000 to 35.000 mm, y 0.000 to 0.245 mm\n");
}

TEST_F(Mero, LeavesTheOldMosaicOnAFullDisk)
{
    write_file(place.file("0.mmv"), "old");
    write_file(place.file("source"), "for i = 1, 100000 do mark(i % 2, 7) end");
    const outcome result = run("trap '' XFSZ; ulimit -f 100; " VIMBO_MERO " -s 35 " +
                               place.file("source") + ' ' + place.file("0.mmv"));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(begins(result.output, "mero: cannot write " + place.file("0.mmv")));
    EXPECT_EQ(read_file(place.file("0.mmv")), "old");
    expect_nothing_but_source_and_mosaic();
}

TEST_F(Mero, NamesTheLineOfAnError)
{
    for (const char *source : {"\nmark(", "\nmark(1)", "\nerror('no')", "\nnosuch()",
                               "\nmark(1e12, 0)", "\nos.exit(0)"}) {
        const outcome result = evaluate("-S", source);
        EXPECT_EQ(result.status, 1) << source;
        EXPECT_TRUE(holds(result.output, "source:2:"));
    }
}

TEST_F(Mero, GivesSourcesNoWayToFilesProcessesOrCompiledCode)
{
    const outcome result =
        evaluate("-S", "for _, name in ipairs{'io', 'os', 'package', 'debug', 'require', 'load',\n"
                       "                       'loadfile', 'loadstring', 'dofile'} do\n"
                       "    if _G[name] ~= nil then error(name .. ' is within reach') end\n"
                       "end\n"
                       "mark(1, 1)");
    EXPECT_EQ(result.status, 0) << result.output;
    const outcome compiled = evaluate("-S", "\x1bLuaT");
    EXPECT_EQ(compiled.status, 1);
    EXPECT_TRUE(holds(compiled.output, "a binary chunk (mode is 't')"))
        << "compiled code is not refused as such: " << compiled.output;
}

TEST_F(Mero, TakesCoordinatesUpToTheLimitAndNoFarther)
{
    // The unit in which a number of the source is one of the mosaic's.
    const std::string unit = "-s 0.00390625";
    EXPECT_EQ(
        integrate(unit, "jump(2147483647.49, 2147483646) mark(-2147483648.5, -2147483648)").output,
        "2 moves written to " + place.file("0.mmv") + "\n");
    EXPECT_EQ(read_file(place.file("0.mmv")),
              mosaic_bytes({{2147483647, 2147483646}, {-2147483647 - 1, -2147483647}}));
    for (const char *beyond : {"mark(2147483647.5, 0)", "mark(0, 2147483647.5)",
                               "mark(-2147483648.51, 0)", "mark(0, -2147483648.51)"}) {
        const outcome result = integrate(unit, beyond);
        EXPECT_EQ(result.status, 1) << beyond << " is taken";
        EXPECT_TRUE(holds(result.output, "out of the range"));
    }
}

TEST_F(Mero, CentersWhatLiesAtTheLimitOfCoordinates)
{
    const std::string unit = "-c -s 0.00390625";
    const struct {
        const char *source;
        std::vector<vimbo::path_vertex> centred;
    } cases[] = {
        {"jump(2147483647, 2147483646) mark(2147483645, 2147483640)", {{1, 2}, {-1, -3}}},
        {"jump(-2147483648, -2147483648) mark(-2147483646, -2147483644)", {{-1, -2}, {1, 3}}},
        {"jump(-2147483648, 0) mark(2147483647, 0)", {{-2147483647 - 1, 0}, {2147483647, 1}}},
    };
    for (const auto &[source, centred] : cases) {
        EXPECT_EQ(integrate(unit, source).status, 0) << source;
        EXPECT_EQ(read_file(place.file("0.mmv")), mosaic_bytes(centred)) << source;
    }
}

TEST_F(Mero, PutsItsMosaicInPlaceAtOnceWithTheUsersPermissions)
{
    write_file(place.file("0.mmv"), "old");
    write_file(place.file("source"), square);
    const int events = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(
        inotify_add_watch(events, place.path().c_str(), IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO),
        0);
    EXPECT_EQ(run("umask 027; exec " VIMBO_MERO " -s 35 " + place.file("source") + ' ' +
                  place.file("0.mmv"))
                  .status,
              0);
    alignas(inotify_event) char buffer[4096];
    const ssize_t bytes = read(events, buffer, sizeof buffer);
    close(events);
    bool moved = false;
    for (ssize_t at = 0; at < bytes;) {
        const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
        const std::string name = event->name;
        EXPECT_FALSE(name == "0.mmv" && (event->mask & (IN_DELETE | IN_MOVED_FROM)) != 0)
            << "for a moment there was no mosaic";
        moved = moved || (name == "0.mmv" && (event->mask & IN_MOVED_TO) != 0);
        at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    EXPECT_TRUE(moved) << "the mosaic was not put in place by its name alone";
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(place.file("0.mmv")).permissions(),
              perms::owner_read | perms::owner_write | perms::group_read);
}

TEST_F(Mero, MakesMosaicsThatTheUserLetsOthersReadButNobodyRun)
{
    write_file(place.file("source"), square);
    EXPECT_EQ(run("umask 0; exec " VIMBO_MERO " -s 35 " + place.file("source") + ' ' +
                  place.file("0.mmv"))
                  .status,
              0);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(place.file("0.mmv")).permissions(),
              perms::owner_read | perms::owner_write | perms::group_read | perms::group_write |
                  perms::others_read | perms::others_write);
}

TEST_F(Mero, LeavesTheOldMosaicAfterAnError)
{
    write_file(place.file("0.mmv"), "old");
    EXPECT_EQ(integrate("-s 35", "mark(").status, 1);
    EXPECT_EQ(read_file(place.file("0.mmv")), "old");
}

TEST_F(Mero, ReportsThatNothingWasMarked)
{
    for (const char *source : {"", "jump(1, 1)"}) {
        const outcome result = integrate("-s 35", source);
        EXPECT_EQ(result.status, 3);
        EXPECT_EQ(result.output, "nothing was marked\n");
    }
    EXPECT_FALSE(std::filesystem::exists(place.file("0.mmv")));
}

TEST_F(Mero, ReportsWhatItCannotReadOrWrite)
{
    for (const std::string &path : {std::string("/no/such/file"), place.path().string()}) {
        const outcome unread = run(VIMBO_MERO " -S " + path);
        EXPECT_EQ(unread.output, "mero: cannot read " + path + "\n");
        EXPECT_EQ(unread.status, 1);
    }
    const outcome result = evaluate("-s 35", square, "/no/such/place/0.mmv");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(begins(result.output, "mero: cannot write beside /no/such/place/0.mmv"));
}

TEST_F(Mero, RefusesACommandLineThatIsNotOneOfItsTwo)
{
    for (const char *options :
         {"-x", "-s", "-s 0", "-s -1", "-s nan", "-s 3x", "-c", "-r", "-S -s 35", "-s 35 -r"}) {
        const outcome result = evaluate(options, square);
        EXPECT_EQ(result.status, 1) << options;
        EXPECT_TRUE(begins(result.output, "mero: usage: ")) << options;
    }
}

TEST_F(Mero, StopsWhenItIsAskedToAndTakesTheMarkerAway)
{
    write_file(place.file("0.mmv"), "old");
    write_file(place.file("source"), "while true do pcall(mark, 1, 1) end");
    write_file("/tmp/mero.end", "");
    FILE *stream = vimbo::open_command(
        (VIMBO_MERO " -s 35 " + place.file("source") + ' ' + place.file("0.mmv")).c_str());
    ASSERT_NE(stream, nullptr);
    const auto taken_away = [] { return !std::filesystem::exists("/tmp/mero.end"); };
    ASSERT_TRUE(wait_until(taken_away)) << "a stale marker stays";
    write_file("/tmp/mero.end", "");
    char buffer[64] = {};
    const std::size_t count = std::fread(buffer, 1, sizeof buffer, stream);
    EXPECT_EQ(std::string(buffer, count), "stopped\n");
    EXPECT_TRUE(taken_away());
    EXPECT_EQ(vimbo::close_command(stream), 3);
    EXPECT_EQ(read_file(place.file("0.mmv")), "old");
    expect_nothing_but_source_and_mosaic();
}

class Plimb : public testing::Test
{
protected:
    outcome measure(const std::string &bytes)
    {
        write_file(place.file("0.mmv"), bytes);
        return run(VIMBO_PLIMB " " + place.file("0.mmv") + " 2>" + place.file("fault"));
    }

    const scratch_directory place;
};

std::vector<double> numbers_of(const std::string &output)
{
    std::istringstream text(output);
    return {std::istream_iterator<double>(text), {}};
}

TEST_F(Plimb, PrintsFiftyFigures)
{
    // 32 marks of equal length to the right: one window, straight.
    std::vector<vimbo::path_vertex> points;
    for (int i = 1; i <= 32; ++i)
        points.push_back({i * 1000000, 1});
    const outcome result = measure(mosaic_bytes(points));
    EXPECT_EQ(result.status, 0);
    const std::vector<double> figures = numbers_of(result.output);
    ASSERT_EQ(figures.size(), 50U);
    for (std::size_t k = 0; k < 32; ++k)
        EXPECT_NEAR(figures[k], static_cast<double>(k + 1) / 32, 1e-6) << "r(" << k + 1 << ')';
    for (std::size_t bin = 0; bin < 16; ++bin)
        EXPECT_NEAR(figures[32 + bin], bin == 8 ? 1.0 : 0.0, 1e-6) << "bin " << bin;
    EXPECT_NEAR(figures[48], 1, 1e-6);
    EXPECT_NEAR(figures[49], 0, 1e-6);
}

TEST_F(Plimb, DividesLengthAmongMarksJumpsAndDirections)
{
    // A jump upward, then marks to the left, downward and to the right.
    const outcome result =
        measure(mosaic_bytes({{0, 1000000}, {-1000000, 1000001}, {-1000000, 1}, {0, 1}}));
    const std::vector<double> figures = numbers_of(result.output);
    ASSERT_EQ(figures.size(), 50U);
    EXPECT_NEAR(figures[48], 0.75, 1e-5);
    EXPECT_NEAR(figures[49], 0.25, 1e-5);
    EXPECT_NEAR(figures[32 + 4], 0.25, 1e-5) << "downward";
    EXPECT_NEAR(figures[32 + 8], 0.25, 1e-5) << "to the right";
    EXPECT_NEAR(figures[32 + 15], 0.25, 1e-5) << "to the left, a little upward";
    for (std::size_t k = 0; k < 32; ++k)
        EXPECT_EQ(figures[k], 0) << "an incomplete window is left out";
}

TEST_F(Plimb, CountsADirectionBetweenTwoBinsToTheUpperOne)
{
    // Eight marks of one length along each axis, exactly on the edges of their bins.
    const struct {
        int dx, dy;
        std::size_t bin;
    } moves[] = {{1, 0, 8},   {1, 1, 10},  {0, 1, 12}, {-1, 1, 14},
                 {-1, 0, 15}, {-1, -1, 2}, {0, -1, 4}, {1, -1, 6}};
    constexpr int step = 1000000;
    std::vector<vimbo::path_vertex> points = {{0, 1}};
    double length = 1;
    for (const auto &move : moves) {
        points.push_back({points.back().x + move.dx * step, points.back().y + move.dy * step});
        length += std::hypot(move.dx, move.dy) * step;
    }
    const std::vector<double> figures = numbers_of(measure(mosaic_bytes(points)).output);
    ASSERT_EQ(figures.size(), 50U);
    for (const auto &move : moves)
        EXPECT_NEAR(figures[32 + move.bin], std::hypot(move.dx, move.dy) * step / length, 1e-5)
            << "the move by " << move.dx << ',' << move.dy << " is in another bin";
}

TEST_F(Plimb, CountsADirectionToTheBinWithinWhoseEdgesItLies)
{
    // Of each bin one mark close to its lower edge, one in its middle, one close to its
    // upper edge; in each of another length: 1 + 2 + … + 16 = 136.
    constexpr double step = 1000000;
    constexpr double width = std::numbers::pi / 8;
    std::vector<vimbo::path_vertex> points = {{0, 1}};
    double x = 0;
    double y = 0;
    for (int bin = 0; bin < 16; ++bin)
        for (const double within : {0.02, 0.5, 0.98}) {
            const double angle = -std::numbers::pi + (bin + within) * width;
            x += step * (bin + 1) * std::cos(angle);
            y += step * (bin + 1) * std::sin(angle);
            points.push_back({static_cast<std::int32_t>(x), static_cast<std::int32_t>(y) | 1});
        }
    const std::vector<double> figures = numbers_of(measure(mosaic_bytes(points)).output);
    ASSERT_EQ(figures.size(), 50U);
    for (std::size_t bin = 0; bin < 16; ++bin)
        EXPECT_NEAR(figures[32 + bin], static_cast<double>(bin + 1) / 136, 1e-5) << "bin " << bin;
}

TEST_F(Plimb, TellsTheDirectionOfTheShortestMoves)
{
    // By one up, one to the right, two up, one to the left and two down.
    const std::vector<double> figures =
        numbers_of(measure(mosaic_bytes({{0, 1}, {1, 1}, {1, 3}, {0, 3}, {0, 1}})).output);
    ASSERT_EQ(figures.size(), 50U);
    EXPECT_NEAR(figures[32 + 12], 3.0 / 7, 1e-6) << "upward";
    EXPECT_NEAR(figures[32 + 8], 1.0 / 7, 1e-6) << "to the right";
    EXPECT_NEAR(figures[32 + 15], 1.0 / 7, 1e-6) << "to the left";
    EXPECT_NEAR(figures[32 + 4], 2.0 / 7, 1e-6) << "downward";
}

TEST_F(Plimb, MeasuresALongPathWithoutAGapBetweenItsThreads)
{
    // A jump far out, then marks to and fro there: where a stretch of the path
    // started at the origin once more, its length would show.
    constexpr int far_out = 1000000000;
    constexpr int step = 1000;
    constexpr int moves = 3200000;
    std::vector<vimbo::path_vertex> points = {{far_out, 0}};
    for (int i = 1; i < moves; ++i)
        points.push_back({far_out + (i % 2) * step, 1});
    const outcome result = measure(mosaic_bytes(points));
    EXPECT_EQ(result.status, 0);
    const std::vector<double> figures = numbers_of(result.output);
    ASSERT_EQ(figures.size(), 50U);
    const double length = far_out + (moves - 1.0) * step;
    EXPECT_NEAR(figures[49], far_out / length, 1e-6) << "jumps";
    EXPECT_NEAR(figures[32 + 8], (1 - far_out / length) / 2, 1e-6) << "to the right";
    EXPECT_NEAR(figures[32 + 15], (1 - far_out / length) / 2, 1e-6) << "to the left";
    EXPECT_NEAR(figures[0], 1.0 / 32, 2e-5) << "one step of 32";
    EXPECT_NEAR(figures[1], 0, 2e-5) << "and back";
}

TEST_F(Plimb, PrintsZeroesForAnEmptyMosaic)
{
    const outcome result = measure(mosaic_bytes(8, 0, ""));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(numbers_of(result.output), std::vector<double>(50, 0.0));
}

TEST_F(Plimb, ReportsAFileThatIsNoMosaic)
{
    for (const std::string &bytes :
         {std::string(), std::string(31, '\0'), mosaic_bytes(8, 2, "too short")}) {
        const outcome result = measure(bytes);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_NE(read_file(place.file("fault")), "");
    }
    EXPECT_EQ(run(VIMBO_PLIMB " /no/such/file 2>/dev/null").status, 1);
    EXPECT_EQ(run(VIMBO_PLIMB " / 2>/dev/null").status, 1);
    EXPECT_EQ(run(VIMBO_PLIMB " 2>/dev/null").status, 1);
}

// Not under AddressSanitizer, which takes terabytes of address space itself.
#if !defined(__SANITIZE_ADDRESS__)
TEST_F(Plimb, ReportsAMosaicThatDoesNotFitIntoItsMemory)
{
    write_file(place.file("0.mmv"), "");
    std::filesystem::resize_file(place.file("0.mmv"), std::uintmax_t{1} << 33);
    const outcome result = run("ulimit -v 1000000; exec " VIMBO_PLIMB " " + place.file("0.mmv") +
                               " 2>" + place.file("fault"));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(read_file(place.file("fault")), "plimb: " + place.file("0.mmv") + ": no mosaic\n");
}
#endif

TEST_F(Plimb, LeavesWindowsOfNoLengthOut)
{
    // 32 jumps in one place, then 32 marks to the right: one straight window counts.
    std::vector<vimbo::path_vertex> points(32, {0, 0});
    for (int i = 1; i <= 32; ++i)
        points.push_back({i * 1000, 1});
    const std::vector<double> figures = numbers_of(measure(mosaic_bytes(points)).output);
    ASSERT_EQ(figures.size(), 50U);
    EXPECT_NEAR(figures[31], 1, 1e-6);
}

TEST_F(Mero, ReportsAMosaicThatCannotBeRenamedIntoPlace)
{
    std::filesystem::create_directories(place.file("0.mmv"));
    const outcome result = integrate("-s 35", square);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(begins(result.output, "mero: cannot write " + place.file("0.mmv")));
    for (const auto &entry : std::filesystem::directory_iterator(place.path()))
        EXPECT_TRUE(lacks(entry.path().filename().string(), "0.mmv."))
            << "a half of it is left behind";
}

// Not under AddressSanitizer, which takes terabytes of address space itself.
#if !defined(__SANITIZE_ADDRESS__)
TEST_F(Mero, ReportsThatItHasNoMemoryForMoves)
{
    write_file(place.file("source"), square);
    const outcome result =
        run("ulimit -v 500000; exec " VIMBO_MERO " -S -r " + place.file("source"));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.output, "not enough memory for the moves"));
}
#endif

TEST_F(Mero, GivesMemoryBackThatASourceHasDropped)
{
    const auto most_memory = [] { // of any process that this one has waited for
        rusage usage = {};
        getrusage(RUSAGE_CHILDREN, &usage);
        return usage.ru_maxrss; // KiB
    };
    const long before = most_memory();
    // With what it is made of, more than a source may hold.
    const std::string dropping = "for i = 1, 12000 do local dropped = string.rep('x', 100000) end ";
    const outcome result = evaluate("-S", dropping + square);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_LT(most_memory(), std::max(before + 1, 1000000L)) << "what was dropped is kept";
}

TEST_F(Mero, LetsOneTableOfASourceTakeHalfOfTheMemory)
{
    // It grows from 512 MiB to 1 GiB, of the 2 GiB that there are.
    const std::string growing = "local t = {} for i = 1, 2 ^ 25 + 1 do t[i] = true end ";
    const outcome result = evaluate("-S", growing + square);
    EXPECT_EQ(result.status, 0) << result.output;
}

TEST_F(Mero, ReportsThatASourceTakesTooMuchMemory)
{
    const outcome result = evaluate("-S", "string.rep('x', 0x7fffffff)");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(holds(result.output, "not enough memory"));
}

} // namespace
