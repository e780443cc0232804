#include "jobs/eval_reader.hpp"
#include "jobs/evaluation.hpp"
#include "ui/fixed_text.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace
{

using vimbo::eval_output_capacity;

std::string laid_out(const std::string &input, bool at_end)
{
    char output[eval_output_capacity];
    std::memset(output, 'x', sizeof output); // what is left of another run
    vimbo::format_eval_output(input, at_end, output);
    return output;
}

std::string letters(std::size_t count)
{
    return std::string(count, 'a');
}

std::string full_lines(int count)
{
    std::string lines;
    for (int i = 0; i < count; ++i)
        lines += letters(255) + '\n';
    return lines;
}

TEST(EvalOutput, EndsAShortTextWithALineFeed)
{
    EXPECT_EQ(laid_out("ok", true), "ok\n");
    EXPECT_EQ(laid_out("ok\n", true), "ok\n\n");
}

TEST(EvalOutput, KeepsOnePieceOf255BytesWhole)
{
    EXPECT_EQ(laid_out(letters(255), true), full_lines(1));
    EXPECT_EQ(laid_out(letters(256), true), full_lines(1) + "a\n");
}

TEST(EvalOutput, CutsLongOutputIntoPieces)
{
    EXPECT_EQ(laid_out(letters(600), true), full_lines(2) + letters(90) + '\n');
}

TEST(EvalOutput, DropsWhatFollowsTheFifteenthPieceWithoutAMark)
{
    EXPECT_EQ(laid_out(letters(3825), true), full_lines(15));
    EXPECT_EQ(laid_out(letters(3826), true), full_lines(15));
    EXPECT_EQ(laid_out(letters(4095), true), full_lines(15));
}

TEST(EvalOutput, MarksOutputThatWasNotReadToItsEnd)
{
    EXPECT_EQ(laid_out(letters(4096), false), full_lines(15) + "...\n");
}

TEST(StatusLine, NamesTheExitStatus)
{
    EXPECT_EQ(vimbo::status_line(0), "Status: ok.\n");
    EXPECT_EQ(vimbo::status_line(3), "Status: uknown.\n");
    EXPECT_EQ(vimbo::status_line(-1), "Status: abnormal.\n");
    EXPECT_EQ(vimbo::status_line(1), "Status: error.\n");
    EXPECT_EQ(vimbo::status_line(254), "Status: error.\n");
}

TEST(EvalReader, MarksOutputThatCannotBeRead)
{
    const rig::scratch_directory place;
    FILE *stream = std::fopen(place.file("for writing").c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    EXPECT_STREQ(static_cast<const char *>(vimbo::eval_reader(stream)), "...\n");
    std::fclose(stream);
}

TEST(Progress, DoesNotReplaceALastCharacterThatWasTyped)
{
    const auto evaluation = std::make_unique<vimbo::evaluation_state>();
    evaluation->eval_job.pipe = stdin; // something runs
    for (const std::size_t length : {64U, 65U}) {
        const std::string typed = std::string(length - 1, '.') + 'x';
        vimbo::set_text(evaluation->eval_text, typed);
        vimbo::animate_progress(*evaluation);
        EXPECT_EQ(evaluation->eval_text, typed);
    }
}

} // namespace
