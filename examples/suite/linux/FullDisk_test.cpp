// What the writer of tables does without room, which this system can be asked for.
#include "../CsvWriter.h"
#include "../Modules_test.h"

#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>

using namespace suite;

namespace {

const std::vector<std::string> names = {"row", "speed m/s"};

/// Files of this process stay below a size while it lives.
class SizeLimit
{
public:
    explicit SizeLimit(rlim_t bytes)
        : handler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

} // namespace

TEST(CsvWritingOnAFullDisk, rowsWaitForRoomAndTheFileHoldsWholeOnes)
{
    const brvTesting::TemporaryFolder folder;
    std::string expected = "row,speed m/s\n";
    {
        CsvWriter writer(folder.path() / "run.csv", names, std::chrono::milliseconds(0));
        int row = 0;
        const auto add = [&] {
            writer.add({static_cast<double>(row), 0.25});
            expected += std::to_string(row++) + ",0.25\n";
        };
        std::string before;
        {
            const SizeLimit limit(1001);
            while (writer.fault().empty() && row < 1000) {
                before = expected;
                add();
            }
            EXPECT_EQ(writer.waiting(), 1u);
            EXPECT_EQ(folder.read("run.csv"), before) << "what was written of the row is to be removed";
            add();
            EXPECT_FALSE(writer.write());
            EXPECT_EQ(folder.read("run.csv"), before);
        }
        add();
        EXPECT_EQ(writer.fault(), "");
        EXPECT_EQ(writer.waiting() + writer.lost(), 0u);
    }
    EXPECT_EQ(folder.read("run.csv"), expected);
}

TEST(CsvWritingOnAFullDisk, rowsAreLostWhenTooManyWait)
{
    CsvWriter writer("/dev/full", names, std::chrono::hours(1));
    EXPECT_EQ(writer.fault(), "No space left on device");
    for (int row = 0; row < 200'000; ++row) {
        writer.add({static_cast<double>(row), 0.25});
    }
    EXPECT_FALSE(writer.write());
    EXPECT_GT(writer.lost(), 0u);
    EXPECT_EQ(writer.waiting() + writer.lost(), 200'000u);
}

using FullDisk = Modules;

TEST_F(FullDisk, aRecorderThatLosesRowsSaysSoAndHasFailed)
{
    ChildProcess recorder = start("recorder", {"-file", "/dev/full", "-wait", "100", "-silence", "100"});
    lineWith(recorder, "recorder: waiting at most");
    ChildProcess vehicle = start("vehicle", {"-seconds", "1"});
    EXPECT_EQ(recorder.wait(deadline), failure);
    EXPECT_THAT(recorder.errorOutput(), HasSubstr(" rows could not be written to /dev/full"));
}
