#include "jobs/eval_reader.hpp"

#include "platform/commands.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace vimbo
{

namespace
{

constexpr char cut_mark[] = "...\n";
constexpr std::size_t piece_size = 255;
// As many as leave room for the mark, each with its line feed.
constexpr std::size_t most_pieces = (eval_output_capacity - sizeof cut_mark) / (piece_size + 1);
static_assert(most_pieces == 15);

} // namespace

void format_eval_output(std::span<const char> input, bool at_end,
                        std::span<char, eval_output_capacity> output)
{
    std::size_t in = 0;
    std::size_t out = 0;
    std::size_t pieces = 0;
    do {
        const std::size_t piece = std::min(input.size() - in, piece_size);
        std::memcpy(&output[out], input.data() + in, piece);
        in += piece;
        out += piece;
        output[out++] = '\n';
    } while (++pieces < most_pieces && in < input.size());
    output[out] = '\0';
    if (!at_end)
        std::memcpy(&output[out], cut_mark, sizeof cut_mark);
}

void *eval_reader(void *stream)
{
    // Static, as the result outlives the thread; at most one evaluator runs.
    static char input[eval_output_capacity];
    static char eval_output[eval_output_capacity];
    std::memset(input, 0, sizeof input);
    std::memset(eval_output, 0, sizeof eval_output);

    auto *pipe = static_cast<FILE *>(stream);
    if (pipe == nullptr)
        return eval_output;
    const std::size_t count = std::fread(input, 1, sizeof input, pipe);
    const bool at_end = std::feof(pipe) != 0;
    if (count > 0)
        format_eval_output({input, count}, at_end, eval_output);
    else if (!at_end)
        std::memcpy(eval_output, cut_mark, sizeof cut_mark);
    await_command_end(pipe);
    return eval_output;
}

} // namespace vimbo
