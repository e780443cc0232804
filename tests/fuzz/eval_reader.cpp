// Any output of the evaluator: what is shown is a text that fits, of pieces of
// at most 255 bytes.
#include "jobs/eval_reader.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    FILE *stream = fmemopen(const_cast<unsigned char *>(data), size, "r");
    if (stream == nullptr)
        return 0;
    const auto *text = static_cast<const char *>(vimbo::eval_reader(stream));
    std::fclose(stream);
    if (strnlen(text, vimbo::eval_output_capacity) == vimbo::eval_output_capacity)
        std::abort();
    if (text[0] == '\0' && data[0] != '\0')
        std::abort();
    return 0;
}
