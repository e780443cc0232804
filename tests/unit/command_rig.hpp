// Commands behind pipes as tests run them: with all that they leave counted.
#pragma once

#include "platform/commands.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace rig
{

inline std::string read_all(FILE *stream)
{
    std::string text;
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stream)) > 0;)
        text.append(buffer, count);
    return text;
}

struct outcome {
    std::string output;
    int status;
};

inline outcome run(const std::string &command)
{
    FILE *stream = vimbo::open_command(command.c_str());
    if (stream == nullptr)
        return {"could not be started", -2};
    std::string output = read_all(stream);
    return {output, vimbo::close_command(stream)};
}

// All that was let go has ended and is gone.
inline bool all_collected()
{
    return wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    });
}

class Command : public testing::Test
{
protected:
    ~Command() override
    {
        EXPECT_TRUE(all_collected()) << "a process is left";
        EXPECT_EQ(open_descriptors(getpid()), descriptors) << "a descriptor is left open";
    }

    const scratch_directory place;
    const std::size_t descriptors = open_descriptors(getpid());
};

} // namespace rig
