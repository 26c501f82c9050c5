#include "brvUtils/platform/ProcessWin32.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/ChildProcess.h"
#include "brvUtils/os/Segment.h"
#include "brvUtils/startup/ModulePaths.h"
#include "testing/Child.h"
#include "testing/Deadline.h"
#include "testing/TemporaryFolder.h"
#include "testing/ThisProgram.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <thread>

namespace {

using namespace brvTesting;
using namespace brvUtils;
namespace fs = std::filesystem;

BRV_CHILD(waitsToBeLookedAt)
{
    childSay("ready");
    childHear();
    return 0;
}

TEST(ProcessWin32, KnowsWhoIsAlive)
{
    EXPECT_TRUE(ProcessWin32::isProcessAlive(ProcessWin32::getCurrentProcessID()));
    Child child("waitsToBeLookedAt");
    child.expectLine("ready");
    EXPECT_TRUE(ProcessWin32::isProcessAlive(child.id()));
    child.kill();
    EXPECT_FALSE(ProcessWin32::isProcessAlive(child.id()));
    EXPECT_FALSE(ProcessWin32::isProcessAlive(0));
    EXPECT_FALSE(ProcessWin32::isProcessAlive(std::numeric_limits<unsigned long>::max()));
    // Its lower half is a number that is alive, where there are two halves.
    const std::uint64_t beyond = (std::uint64_t { 1 } << 32) + ProcessWin32::getCurrentProcessID();
    EXPECT_EQ(ProcessWin32::isProcessAlive(static_cast<unsigned long>(beyond)), sizeof(long) == 4);
}

TEST(ProcessWin32, FindsThisProgramByItsVeryName)
{
    const std::string path = GetModuleFilePath();
    const std::string name = fileName(path);
    EXPECT_TRUE(ProcessWin32::isLaunched(name));
    for (const std::string& other : { brvUtils::toupper(name), name.substr(0, name.size() - 1), name.substr(1), name + "x", "x" + name,
             name + " (deleted)", path, std::string(), std::string(5000, 'x'), std::string("<unknown>"), uniqueName("none") }) {
        EXPECT_FALSE(ProcessWin32::isLaunched(other)) << other;
    }
}

TEST(ProcessWin32, FindsAProgramAsLongAsItRuns)
{
    // A copy, of which nobody else runs another.
    const TemporaryFolder folder;
    const fs::path program = fs::u8path(thisProgram());
    for (const auto& entry : fs::directory_iterator(program.parent_path())) {
        if (entry.path().extension() == ".dll") {
            fs::copy_file(entry.path(), folder.path() / entry.path().filename());
        }
    }
    const std::string name = uniqueName("with blanks and \xC3\xA4") + program.extension().u8string();
    fs::copy_file(program, folder.path() / fs::u8path(name));
    EXPECT_FALSE(ProcessWin32::isLaunched(name));
    os::ChildCommand command;
    command.program = folder.file(name);
    command.arguments = { std::string(childFlag) + "waitsToBeLookedAt" };
    command.pipeInput = true;
    command.pipeOutput = true;
    os::ChildProcess child;
    ASSERT_EQ(child.start(command), os::error::none);
    ASSERT_EQ(child.readLine(30000), "ready");
    EXPECT_TRUE(ProcessWin32::isLaunched(name));
    child.kill();
    ASSERT_NE(child.wait(30000).kind, os::ChildExit::Kind::running);
    EXPECT_FALSE(ProcessWin32::isLaunched(name)) << "though this process has a handle of it";
}

/// What the threads of a process count.
struct Counters
{
    std::atomic<std::uint64_t> first;
    std::atomic<std::uint64_t> second;
};

class SharedCounters
{
public:
    explicit SharedCounters(const std::string& name) : segment_(os::openSegment(name.c_str(), sizeof(Counters)).segment) {}
    ~SharedCounters() { os::closeSegment(segment_); }
    SharedCounters(const SharedCounters&) = delete;
    SharedCounters& operator=(const SharedCounters&) = delete;

    Counters& operator*() const { return *static_cast<Counters*>(os::segmentAddress(segment_)); }
    Counters* operator->() const { return &**this; }

    /// Returns when both threads have counted on.
    void awaitChange() const
    {
        const Deadline deadline("counting");
        const std::uint64_t first = (*this)->first;
        const std::uint64_t second = (*this)->second;
        while ((*this)->first == first || (*this)->second == second) {
            std::this_thread::yield();
        }
    }

private:
    os::Segment* segment_;
};

BRV_CHILD(countsByTwoThreads)
{
    const SharedCounters counters(arguments[0]);
    std::atomic<bool> done { false };
    std::thread other([&] {
        while (!done) {
            ++counters->second;
            std::this_thread::yield();
        }
    });
    std::thread end([&] {
        childHear();
        done = true;
    });
    while (!done) {
        ++counters->first;
        std::this_thread::yield();
    }
    other.join();
    end.join();
    return 0;
}

TEST(ProcessWin32, SuspendsAllThreadsUntilResumed)
{
    const std::string name = uniqueName("counters");
    const SharedCounters counters(name);
    Child child("countsByTwoThreads", { name });
    counters.awaitChange();
    EXPECT_FALSE(ProcessWin32::resume(child.id())) << "it was not suspended";
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(ProcessWin32::suspend(child.id()));
        const std::uint64_t first = counters->first;
        const std::uint64_t second = counters->second;
        EXPECT_FALSE(ProcessWin32::suspend(child.id()));
        EXPECT_TRUE(ProcessWin32::isProcessAlive(child.id()));
        for (int j = 0; j < 1000; ++j) {
            std::this_thread::yield();
        }
        EXPECT_EQ(counters->first, first);
        EXPECT_EQ(counters->second, second);
        EXPECT_TRUE(ProcessWin32::resume(child.id()));
        EXPECT_FALSE(ProcessWin32::resume(child.id()));
        counters.awaitChange();
    }
    child.closeInput();
    child.expectExit(0);
    EXPECT_FALSE(ProcessWin32::suspend(child.id()));
    EXPECT_FALSE(ProcessWin32::resume(child.id()));
}

TEST(ProcessWin32, DoesNotSuspendWhatCannotBe)
{
    for (const unsigned long id : { 0UL, 1UL, ProcessWin32::getCurrentProcessID(), std::numeric_limits<unsigned long>::max() }) {
        EXPECT_FALSE(ProcessWin32::suspend(id)) << id;
        EXPECT_FALSE(ProcessWin32::resume(id)) << id;
    }
}

} // namespace
