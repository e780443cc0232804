// The evaluator's reader thread: what of the tool's output is shown.
#pragma once

#include <cstddef>
#include <span>

namespace vimbo
{

inline constexpr std::size_t eval_output_capacity = 4096;

/// Lays `input` out as the output box shows it: pieces of at most 255 bytes,
/// each with a line feed behind it, at least one, at most the 15 that fit. `at_end`
/// false adds "...\n" as the mark of what was not read.
void format_eval_output(std::span<const char> input, bool at_end,
                        std::span<char, eval_output_capacity> output);

/// The reader thread's function: takes the first 4096 bytes of the stream (a
/// FILE *, or null), then drops the rest until the tool has ended, so that a
/// chatty tool ends with its own status. Returns the text in a buffer of its
/// own, which the next run reuses.
void *eval_reader(void *stream);

} // namespace vimbo
