// A scratch directory for text files, and a buffer to read them into.
#pragma once

#include "sources/text_file.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace rig
{

using vimbo::source_capacity;

struct source_buffer {
    char bytes[source_capacity];
};

class TextFile : public testing::Test
{
protected:
    std::string read(const std::string &path)
    {
        EXPECT_EQ(vimbo::read_text_file(path.c_str(), buffer->bytes), buffer->bytes);
        return {buffer->bytes, strnlen(buffer->bytes, source_capacity)};
    }

    const scratch_directory place;
    std::unique_ptr<source_buffer> buffer = std::make_unique<source_buffer>();
};

} // namespace rig
