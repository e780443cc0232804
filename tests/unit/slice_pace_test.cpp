#include "render/slice_pace.hpp"

#include <gtest/gtest.h>

namespace
{

using vimbo::slice_pace;

TEST(SlicePace, TakesWhatIsMissingWhereASliceCouldTakeMore)
{
    slice_pace pace = {};
    EXPECT_EQ(next_slice(pace, 100), 100);
    EXPECT_EQ(next_slice(pace, 1 << 20), 8192) << "the first, of unknown speed";
    pace.slice_vertices = 50000;
    EXPECT_EQ(next_slice(pace, 49999), 49999);
    EXPECT_EQ(next_slice(pace, 50001), 50000);
    EXPECT_EQ(next_slice(pace, 0), 0);
}

TEST(SlicePace, KnowsWhatAFrameIsTooShortForOnlyAfterATimedSlice)
{
    slice_pace pace = {};
    EXPECT_FALSE(exceeds_frame(pace, 1 << 30));
    pace.vertices_per_second = 30000;
    EXPECT_FALSE(exceeds_frame(pace, 999));
    EXPECT_TRUE(exceeds_frame(pace, 1001));
}

TEST(SlicePace, KnowsWhatASliceIsTooShortForOnlyAfterATimedSlice)
{
    slice_pace pace = {};
    EXPECT_FALSE(exceeds_slice(pace, 1 << 30));
    pace.vertices_per_second = 1000 / vimbo::slice_time;
    EXPECT_FALSE(exceeds_slice(pace, 999));
    EXPECT_TRUE(exceeds_slice(pace, 1001));
}

} // namespace
