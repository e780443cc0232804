#include "mosaic/mosaic_file.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace
{

std::optional<vimbo::mosaic_body> read(std::uint32_t element_size, std::uint64_t element_count,
                                       std::uint64_t body_bytes)
{
    const std::string bytes = rig::mosaic_bytes(element_size, element_count, {});
    unsigned char header[vimbo::mosaic_header_size];
    std::copy(bytes.begin(), bytes.end(), header);
    vimbo::mosaic_body body = {};
    if (!vimbo::read_mosaic_header(header, body_bytes, body))
        return std::nullopt;
    return body;
}

TEST(MosaicHeader, CountsThePointsAndTheTraysCentre)
{
    const auto body = read(8, 1000, 8000);
    ASSERT_TRUE(body);
    EXPECT_EQ(body->byte_count, 8000U);
    EXPECT_EQ(body->vertex_count, 1001);
}

TEST(MosaicHeader, CountsOnlyTheTraysCentreForNoElements)
{
    EXPECT_EQ(read(8, 0, 0)->vertex_count, 1);
    EXPECT_EQ(read(0, 0, 0)->vertex_count, 1);
    EXPECT_EQ(read(UINT32_MAX, 0, 0)->vertex_count, 1);
}

TEST(MosaicHeader, CountsWholePointsWhateverTheElementsSize)
{
    EXPECT_EQ(read(4, 5, 20)->vertex_count, 3);
    EXPECT_EQ(read(1, 7, 7)->vertex_count, 1);
    EXPECT_EQ(read(12, 2, 24)->vertex_count, 4);
}

TEST(MosaicHeader, IsRefusedWhenItPromisesMoreThanTheFileHolds)
{
    EXPECT_FALSE(read(8, 1000, 7999));
    EXPECT_TRUE(read(8, 1000, 8001));
}

TEST(MosaicHeader, IsRefusedWhenItsProductOverflows)
{
    EXPECT_FALSE(read(8, UINT64_MAX, UINT64_MAX));
    EXPECT_FALSE(read(16, std::uint64_t{1} << 60, UINT64_MAX));
}

TEST(MosaicHeader, IsRefusedWhenItPromisesElementsOfNoSize)
{
    EXPECT_FALSE(read(0, 1, 100));
}

} // namespace
