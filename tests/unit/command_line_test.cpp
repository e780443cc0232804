#include "app/command_line.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using vimbo::app_state;

struct outcome {
    std::vector<std::string> arguments; // the program keeps some of them as they are
    bool accepted = false;
    std::unique_ptr<app_state> app;
    std::string message;
};

outcome read(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "the-program");
    std::vector<char *> pointers;
    pointers.reserve(arguments.size());
    for (std::string &argument : arguments)
        pointers.push_back(argument.data());
    outcome result;
    result.app = std::make_unique<app_state>();
    testing::internal::CaptureStderr();
    result.accepted =
        vimbo::read_command_line(*result.app, static_cast<int>(pointers.size()), pointers.data());
    result.message = testing::internal::GetCapturedStderr();
    result.arguments = std::move(arguments);
    return result;
}

const std::string usage =
    "Vimbo is mero's interface to korvat.\nusage: the-program [-e tr_w,tr_h,tr_r] [-t "
    "tray_directory] [-s src directory] [-w wndw_w,wndw_h]\n\t-e\twidth,height,radius\t\tExtent of "
    "the tray (rounded rectangle form) [mm].\n\t-s\tpath\t\t\t\tPath of the sources' "
    "directory.\n\t-t\tpath\t\t\t\tPath to the tray.\n\t-w\twidth,height\t\t\tWindow size [px].\n";

TEST(CommandLine, HasItsDefaults)
{
    const outcome result = read({});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->frame.window_width, 1920);
    EXPECT_EQ(result.app->frame.window_height, 1080);
    EXPECT_EQ(result.app->tray.width, 25600000);
    EXPECT_EQ(result.app->tray.height, 25600000);
    EXPECT_EQ(result.app->tray.corner_radius, 2560000);
    EXPECT_STREQ(result.app->bar.source_directory, "./");
    EXPECT_STREQ(result.app->mosaic.tray_directory, "./");
}

TEST(CommandLine, TakesTheTraysExtentInMillimetres)
{
    const outcome result = read({"-e", "120,80,5"});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->tray.width, 30720000);
    EXPECT_EQ(result.app->tray.height, 20480000);
    EXPECT_EQ(result.app->tray.corner_radius, 1280000);
}

TEST(CommandLine, MultipliesNumbersThatAShortExtentDoesNotReach)
{
    const outcome result = read({"-e", "50"});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->tray.width, 12800000);
    // 25600000 * 256000 and 2560000 * 256000, wrapped around at 32 bits.
    EXPECT_EQ(result.app->tray.height, -520093696);
    EXPECT_EQ(result.app->tray.corner_radius, -1769996288);
}

TEST(CommandLine, KeepsTheLastOfAnOptionGivenTwice)
{
    const outcome result = read({"-w", "640,480", "-s", "a", "-t", "the first one", "-w", "800,600",
                                 "-s", "b", "-t", "last"});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->frame.window_width, 800);
    EXPECT_EQ(result.app->frame.window_height, 600);
    EXPECT_STREQ(result.app->bar.source_directory, "b");
    EXPECT_STREQ(result.app->mosaic.tray_directory, "last");
}

TEST(CommandLine, TakesAnExtentGivenTwiceOnTopOfTheFirst)
{
    constexpr std::uint32_t unit = 256000;
    const outcome result = read({"-e", "50,60,7", "-e", "20"});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->tray.width, 20 * 256000);
    EXPECT_EQ(result.app->tray.height, static_cast<std::int32_t>(60 * unit * unit));
    EXPECT_EQ(result.app->tray.corner_radius, static_cast<std::int32_t>(7 * unit * unit));
    const outcome whole = read({"-e", "50,60,7", "-e", "20,30,4"});
    ASSERT_TRUE(whole.accepted);
    EXPECT_EQ(whole.app->tray.height, 30 * 256000);
    EXPECT_EQ(whole.app->tray.corner_radius, 4 * 256000);
}

TEST(CommandLine, TakesAnySizeUnchecked)
{
    const outcome result = read({"-e", "0,-1,0", "-w", "0,-5"});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->tray.width, 0);
    EXPECT_EQ(result.app->tray.height, -256000);
    EXPECT_EQ(result.app->frame.window_height, -5);
}

TEST(CommandLine, AnswersAnUnknownOptionWithTheUsageAlone)
{
    const outcome result = read({"-x"});
    EXPECT_FALSE(result.accepted);
    EXPECT_EQ(result.message, usage);
}

TEST(CommandLine, AnswersAMissingArgumentWithTheUsageAlone)
{
    const outcome result = read({"-e"});
    EXPECT_FALSE(result.accepted);
    EXPECT_EQ(result.message, usage);
}

TEST(CommandLine, TakesATrayDirectoryOf255Bytes)
{
    const std::string longest(255, 't');
    const outcome result = read({"-t", longest});
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(result.app->mosaic.tray_directory, longest);
}

TEST(CommandLine, RefusesATrayDirectoryOf256BytesInOneLine)
{
    const outcome result = read({"-t", std::string(256, 't')});
    EXPECT_FALSE(result.accepted);
    EXPECT_EQ(result.message, "the-program: the tray directory's path is longer than 255 bytes.\n");
}

} // namespace
