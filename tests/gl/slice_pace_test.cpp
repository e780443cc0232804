// What is learnt from the time that slices take. How long the driver takes here is
// nothing beside the seconds that these are said to have taken.
#include "render/slice_pace.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace
{

using vimbo::slice_pace;

class SlicePace : public testing::Test
{
protected:
    ~SlicePace() override
    {
        end_batch(pace);
    }

    // Ends a slice that is said to have begun so many seconds ago.
    void end_slice(std::int32_t vertices, double ago)
    {
        time_slice(pace, vertices, vimbo::pace_clock() - ago);
    }

    slice_pace pace = {};
};

TEST_F(SlicePace, LearnsNothingFromSlicesThatAreTooShort)
{
    end_slice(1023, 10);
    EXPECT_EQ(pace.last_fence, nullptr);
    EXPECT_EQ(pace.vertices_per_second, 0);
    end_slice(1024, 10);
    EXPECT_NE(pace.last_fence, nullptr);
    EXPECT_NEAR(pace.vertices_per_second, 102.4, 10);
}

TEST_F(SlicePace, LearnsFromTheFirstSliceOnlyThatItTakesTooLong)
{
    end_slice(1 << 20, -10); // in no time, however busy the machine is
    EXPECT_EQ(pace.vertices_per_second, 0) << "the driver may not even have begun it";
    EXPECT_EQ(pace.slice_vertices, 0);
    end_batch(pace);
    end_slice(1 << 20, 8);
    EXPECT_NEAR(pace.vertices_per_second, 1 << 17, 1 << 14);
    EXPECT_NEAR(pace.slice_vertices, (1 << 17) * vimbo::slice_time, 128);
}

TEST_F(SlicePace, CountsTheVerticesOfTheSlicesBeforeTheLast)
{
    end_slice(1 << 20, 8);
    end_slice(1 << 16, 0);
    EXPECT_NEAR(pace.vertices_per_second, 1 << 17, 1 << 14);
    end_slice(1 << 16, 0);
    EXPECT_NEAR(pace.vertices_per_second, (1 << 17) + (1 << 13), 1 << 14);
    EXPECT_EQ(pace.batch_vertices, (1 << 20) + (1 << 17));
    end_batch(pace);
    end_slice(1 << 20, 0);
    end_slice(1 << 20, 0);
    EXPECT_GT(pace.vertices_per_second, 1 << 20) << "the former batch's time";
}

TEST_F(SlicePace, MakesSlicesNoMoreThanFourTimesLongerNorShorterThanItCanTell)
{
    pace.batch_vertices = 1 << 30; // drawn in no time
    pace.last_fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    pace.batch_start = vimbo::pace_clock();
    end_slice(6000, 0);
    EXPECT_EQ(pace.slice_vertices, 24000);
    end_batch(pace);
    end_slice(2000, 1000);
    EXPECT_EQ(pace.slice_vertices, 1024);
}

TEST_F(SlicePace, MakesSlicesNoLongerThanCanBeCounted)
{
    pace.batch_vertices = std::int64_t{1} << 50; // drawn in no time
    pace.last_fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    pace.batch_start = vimbo::pace_clock();
    end_slice(1 << 30, 0);
    EXPECT_EQ(pace.slice_vertices, 1 << 30);
}

} // namespace
