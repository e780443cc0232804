// Disks that take nothing more, and what others have put in the place of the
// files that the evaluator is handed: what stood there stays, the operator is
// told, and the panels are as they were.
#include "tests/faults/fault_rig.hpp"
#include "tests/faults/linux/failing_disk.hpp"
#include "tests/support/texts.hpp"
#include "tests/support/wait.hpp"

#include "sources/text_file.hpp"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace
{

using namespace rig;

constexpr const char *not_saved = "error: unable to save.\n";
constexpr const char *temporary = "/tmp//vimbo";
constexpr const char *not_handed_over = "error: unable to write /tmp//vimbo.\n";

// A source that does not fit where a short one stood.
std::string long_text()
{
    std::string lines;
    while (lines.size() < 60000)
        lines += "jump(0, 0) mark(1, 1)\n";
    return lines;
}

class FailingDisk : public FaultRig, public testing::WithParamInterface<disk_fault>
{
protected:
    FailingDisk()
    {
        std::filesystem::create_directory(place.file("disk"));
    }

    std::string on_disk(const std::string &name) const
    {
        return place.file("disk/" + name);
    }
};

std::string name_of(const testing::TestParamInfo<disk_fault> &fault)
{
    const char *names[] = {"ThatIsFull", "ThatIsAtItsQuota", "ThatIsReadOnly"};
    return names[static_cast<int>(fault.param)];
}

INSTANTIATE_TEST_SUITE_P(Any, FailingDisk,
                         testing::Values(disk_fault::full, disk_fault::quota,
                                         disk_fault::read_only),
                         name_of);

TEST_P(FailingDisk, LeavesTheFileThatWasToBeSavedOver)
{
    const failing_disk disk(place.file("disk"), GetParam());
    open(on_disk("a.txt"), long_text());
    write_file(on_disk("old"), "what stood there before");
    disk.fail();
    EXPECT_EQ(save_as("old"), not_saved);
    EXPECT_EQ(read_file(on_disk("old")), "what stood there before");
    EXPECT_EQ(read_file(on_disk("a.txt")), long_text());
    open_file = on_disk("old"); // the name as it was typed, to be tried again
    expect_as_before();
}

TEST_P(FailingDisk, MakesSavingANewFileAReportedFailure)
{
    const failing_disk disk(place.file("disk"), GetParam());
    open(on_disk("a.txt"), long_text());
    disk.fail();
    EXPECT_EQ(save_as("new"), not_saved);
    EXPECT_EQ(read_file(on_disk("new")), "");
    open_file = on_disk("new");
    expect_as_before();
}

TEST_P(FailingDisk, LeavesTheEvaluatorAnOlderTextWhichIsReported)
{
    const failing_disk disk(place.file("disk"), GetParam());
    vimbo::evaluation_state &evaluation = panels.app().evaluation;
    std::snprintf(evaluation.temp_source_path, sizeof evaluation.temp_source_path, "%s",
                  on_disk("vimbo").c_str());
    write_file(on_disk("vimbo"), "an older text");
    open(place.file("src/long"), long_text());
    write_script(tools.file("mero"), "cat " + on_disk("vimbo") + "\nexit 3\n");
    disk.fail();
    EXPECT_EQ(run_and_complaint("Evaluate"), "error: unable to write " + on_disk("vimbo") + ".\n");
    const std::string shown = evaluation.eval_text;
    EXPECT_TRUE(holds(shown, "\nan older text\nStatus: uknown.\n"));
    expect_as_before();
}

TEST_P(FailingDisk, UnderTheMosaicsIsReportedByTheTool)
{
    const failing_disk disk(place.file("disk"), GetParam());
    tray = on_disk("tray");
    std::filesystem::create_directory(tray);
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, tray.c_str());
    write_script(tools.file("mero"), "[ -d \"${4%/*}\" ] || echo \"no $4\"\nexit 1\n");
    disk.fail();
    EXPECT_EQ(run_and_complaint("Integrate"), "");
    const std::string shown = panels.app().evaluation.eval_text;
    EXPECT_TRUE(holds(shown, "\nno " + tray + "/_mosaics/0.mmv\n\nStatus: error.\n"));
    expect_as_before();
}

class Saving : public FaultRig
{
protected:
    Saving()
    {
        write_file(file, "what stood there before");
    }

    int save(const std::string &content)
    {
        refused.below = place.path().string();
        const int result = vimbo::write_text_file(file.c_str(), content.c_str());
        refused = {};
        return result;
    }

    const std::string file = place.file("file");
};

TEST_F(Saving, GoesOnWhereNoRoomCanBeReserved)
{
    for (const int error : {EOPNOTSUPP, ENODEV, ESPIPE, EINVAL, EBADF}) {
        write_file(file, "what stood there before");
        refused.reserving = error;
        EXPECT_EQ(save(long_text()), 0) << error;
        EXPECT_EQ(read_file(file), long_text());
    }
}

TEST_F(Saving, WritesAllThoughASignalInterruptsItAtEachByte)
{
    refused.writing = EINTR;
    EXPECT_EQ(save("a text"), 0);
    EXPECT_EQ(read_file(file), "a text");
}

TEST_F(Saving, ThatFailsHalfwayIsReported)
{
    refused.writing = EIO;
    refused.room = 1000;
    EXPECT_EQ(save(long_text()), -1);
    EXPECT_EQ(read_file(file).size(), std::string("what stood there before").size());
}

TEST_F(Saving, ThatFailsAsTheFileIsClosedIsReported)
{
    refused.closing = EDQUOT;
    EXPECT_EQ(save("a text"), -1);
}

TEST_F(Saving, BeyondTheLimitOfAFilesSizeIsReported)
{
    open(sources + "/long", long_text());
    write_file(sources + "/old", "what stood there before");
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 10000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string complaint = save_as("old");
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(complaint, not_saved);
    EXPECT_EQ(read_file(sources + "/old"), "what stood there before");
    open_file = sources + "/old";
    expect_as_before();
}

// What others put at the fixed names in the directory for temporary files.
class TemporaryFile : public FaultRig
{
protected:
    TemporaryFile()
    {
        write_script(tools.file("mero"), "[ -f /tmp/vimbo ] && cat /tmp/vimbo\nexit 3\n");
    }

    ~TemporaryFile() override
    {
        std::filesystem::remove_all("/tmp/vimbo");
        std::filesystem::remove_all("/tmp/mero.end");
    }

    void expect_shown(const std::string &output)
    {
        const std::string shown = panels.app().evaluation.eval_text;
        EXPECT_TRUE(holds(shown, "." + output + "\nStatus: uknown.\n"));
    }

    void expect_handed_over()
    {
        for (const char *button : {"Evaluate", "Integrate"}) {
            EXPECT_EQ(run_and_complaint(button), "");
            expect_shown("\nEvaluation:\n" + text);
        }
        EXPECT_TRUE(
            std::filesystem::is_regular_file(std::filesystem::symlink_status("/tmp/vimbo")));
        expect_as_before();
    }

    void expect_told(const std::string &output)
    {
        for (const char *button : {"Evaluate", "Integrate"}) {
            EXPECT_EQ(run_and_complaint(button), not_handed_over);
            expect_shown(output);
        }
        expect_as_before();
    }
};

TEST_F(TemporaryFile, ThatIsALinkIsReplacedAndNotFollowed)
{
    write_file(place.file("precious"), "not to be touched");
    std::filesystem::create_symlink(place.file("precious"), "/tmp/vimbo");
    expect_handed_over();
    EXPECT_EQ(read_file(place.file("precious")), "not to be touched");
}

TEST_F(TemporaryFile, ThatIsALinkToNothingIsReplacedAndNotFollowed)
{
    std::filesystem::create_symlink(place.file("nothing"), "/tmp/vimbo");
    expect_handed_over();
    EXPECT_FALSE(std::filesystem::exists(place.file("nothing")));
}

TEST_F(TemporaryFile, ThatIsALinkWhichCannotBeRemovedIsNotFollowed)
{
    write_file(place.file("precious"), "not to be touched");
    std::filesystem::create_symlink(place.file("precious"), "/tmp/vimbo");
    refused.below = "/tmp//";
    refused.removing = EPERM;
    expect_told("\nEvaluation:\nnot to be touched");
    EXPECT_EQ(read_file(place.file("precious")), "not to be touched");
}

TEST_F(TemporaryFile, ThatIsAPipeIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo("/tmp/vimbo", 0600), 0);
    expect_told("");
}

TEST_F(TemporaryFile, ThatIsADirectoryIsReported)
{
    std::filesystem::create_directory("/tmp/vimbo");
    expect_told("");
}

TEST_F(TemporaryFile, OfAnotherUserIsLeftAloneAndReported)
{
    write_file(temporary, "another user's text");
    ASSERT_EQ(chmod(temporary, 0444), 0);
    ASSERT_EQ(chmod(place.path().c_str(), 0755), 0);
    for (const char *button : {"Evaluate", "Integrate"}) {
        testing::internal::CaptureStderr();
        {
            const without_privileges another;
            panels.click(button);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), not_handed_over);
        ASSERT_TRUE(finish());
        expect_shown("\nEvaluation:\nanother user's text");
    }
    EXPECT_EQ(read_file(temporary), "another user's text");
    expect_as_before();
}

class StopMarker : public TemporaryFile
{
protected:
    void cancel()
    {
        tools.put("mero", "await " + tools.file("go") + " exit 3");
        panels.click("Evaluate");
        panels.click("Cancel");
    }
};

TEST_F(StopMarker, ThatIsALinkIsReplacedAndNotFollowed)
{
    write_file(place.file("precious"), "not to be touched");
    std::filesystem::create_symlink(place.file("precious"), "/tmp/mero.end");
    cancel();
    EXPECT_EQ(read_file(place.file("precious")), "not to be touched");
    EXPECT_EQ(std::filesystem::file_size("/tmp/mero.end"), 0U);
    expect_as_before();
}

TEST_F(StopMarker, ThatIsAPipeIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo("/tmp/mero.end", 0600), 0);
    cancel();
    expect_as_before();
}

} // namespace
