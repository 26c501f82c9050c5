#include "brvUtils/os/OtherProcesses.h"

#include "brvUtils/os/ChildProcess.h"
#include "brvUtils/os/ProcessLife.h"
#include "testing/Child.h"
#include "testing/TemporaryFolder.h"
#include "testing/ThisProgram.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <future>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;
namespace fs = std::filesystem;

BRV_CHILD(waitsUnderItsName)
{
    childSay("ready");
    childHear();
    return 0;
}

/// A copy of this program, which runs.
class RunningCopy
{
public:
    explicit RunningCopy(const std::string& name) : name_(name)
    {
        fs::copy_file(fs::u8path(thisProgram()), folder_.path() / name);
        ChildCommand command;
        command.program = folder_.file(name);
        command.arguments = { std::string(childFlag) + "waitsUnderItsName" };
        command.pipeInput = true;
        command.pipeOutput = true;
        EXPECT_EQ(process_.start(command), error::none);
        EXPECT_EQ(process_.readLine(30000), "ready");
    }

    const std::string& name() const { return name_; }
    std::uint32_t id() const { return process_.id(); }
    void removeFile() const { fs::remove(folder_.path() / name_); }

private:
    TemporaryFolder folder_;
    std::string name_;
    ChildProcess process_;
};

/// Whether the work is true in a process of somebody who may do nothing.
template <typename Work>
bool trueForNobody(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        setsid(); // within a session anybody may resume
        const bool changed = setresgid(nobody, nobody, nobody) == 0 && setresuid(nobody, nobody, nobody) == 0;
        _exit(changed && work() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

TEST(OtherProcesses, CountUnderTheNameOfARemovedFile)
{
    const RunningCopy copy(uniqueName());
    copy.removeFile();
    EXPECT_TRUE(executableIsRunning(copy.name()));
}

TEST(OtherProcesses, DoNotRunWhenTheyAreZombies)
{
    const RunningCopy copy(uniqueName());
    kill(static_cast<pid_t>(copy.id()), SIGKILL);
    siginfo_t end {};
    ASSERT_EQ(waitid(P_PID, copy.id(), &end, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(executableIsRunning(copy.name()));
    EXPECT_FALSE(suspendProcess(copy.id()));
    EXPECT_FALSE(resumeProcess(copy.id()));
}

TEST(OtherProcesses, OfOtherUsersGoByTheirNamesAndAreNotSuspended)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    // The system keeps 15 bytes of a name.
    for (const std::size_t length : { 5, 14, 15, 16, 40 }) {
        const std::string start = std::to_string(length) + "-" + std::to_string(getpid()) + std::string(40, 'x');
        const RunningCopy copy(start.substr(0, length));
        EXPECT_TRUE(trueForNobody([&] { return executableIsRunning(copy.name()); })) << length;
        EXPECT_TRUE(trueForNobody([&] { return !executableIsRunning(start.substr(0, length - 1)); })) << length;
        EXPECT_TRUE(trueForNobody([&] { return !executableIsRunning(start.substr(0, length) + "x"); })) << length;
        EXPECT_TRUE(trueForNobody([&] { return !suspendProcess(copy.id()) && !resumeProcess(copy.id()); }));
        ASSERT_TRUE(suspendProcess(copy.id()));
        EXPECT_TRUE(trueForNobody([&] { return !resumeProcess(copy.id()); }));
    }
}

TEST(OtherProcesses, OfTheSystemAreNoPrograms)
{
    if (getpid() > 2 && geteuid() == 0) {
        EXPECT_FALSE(executableIsRunning("kthreadd"));
        EXPECT_TRUE(trueForNobody([] { return !executableIsRunning("kthreadd"); }));
    }
    EXPECT_FALSE(suspendProcess(1));
    EXPECT_FALSE(resumeProcess(1));
}

TEST(OtherProcesses, AreNotSuspendedWhileSomebodyElseHasThem)
{
    Child child("waitsUnderItsName");
    child.expectLine("ready");
    const auto process = static_cast<pid_t>(child.id());
    ASSERT_EQ(ptrace(PTRACE_SEIZE, process, nullptr, nullptr), 0);
    EXPECT_FALSE(suspendProcess(child.id())) << "a debugger has it";
    ASSERT_EQ(ptrace(PTRACE_INTERRUPT, process, nullptr, nullptr), 0);
    ASSERT_EQ(waitpid(process, nullptr, __WALL), process);
    EXPECT_FALSE(suspendProcess(child.id()));
    EXPECT_FALSE(resumeProcess(child.id()));
    ASSERT_EQ(ptrace(PTRACE_DETACH, process, nullptr, nullptr), 0);
    EXPECT_TRUE(suspendProcess(child.id()));
    EXPECT_TRUE(resumeProcess(child.id()));

    ASSERT_EQ(kill(process, SIGSTOP), 0); // as a terminal does
    EXPECT_FALSE(suspendProcess(child.id())) << "or will stop anyway";
    EXPECT_TRUE(resumeProcess(child.id()));
    child.closeInput();
    child.expectExit(0);
}

TEST(OtherProcesses, AreNotSuspendedByOneThatCannotLook)
{
    Child child("waitsUnderItsName");
    child.expectLine("ready");
    rlimit descriptors {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &descriptors), 0);
    const rlimit none { 0, descriptors.rlim_max };
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    EXPECT_FALSE(suspendProcess(child.id()));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &descriptors), 0);
    EXPECT_FALSE(resumeProcess(child.id())) << "it stands";
    child.closeInput();
    child.expectExit(0);
}

TEST(OtherProcesses, AreNoThreads)
{
    std::promise<pid_t> id;
    std::promise<void> end;
    std::thread thread([&] {
        id.set_value(gettid());
        end.get_future().wait();
    });
    const auto number = static_cast<std::uint32_t>(id.get_future().get());
    EXPECT_FALSE(suspendProcess(number));
    EXPECT_FALSE(resumeProcess(number));
    end.set_value();
    thread.join();
}

} // namespace
