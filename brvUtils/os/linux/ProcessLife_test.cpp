#include "brvUtils/os/ProcessLife.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

#include <fstream>
#include <future>
#include <linux/futex.h>
#include <pthread.h>
#include <string>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

TEST(ProcessLife, ZombiesAreDead)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    siginfo_t end {};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(processIsAlive(static_cast<std::uint32_t>(child)));
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
}

TEST(ProcessLife, ProcessesOfOtherUsersLive)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    const auto own = currentProcessId();
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool changed = setresgid(nobody, nobody, nobody) == 0 && setresuid(nobody, nobody, nobody) == 0;
        _exit(!changed ? 2 : processIsAlive(own) && processIsAlive(1) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(ProcessLife, ThreadsAreNoProcesses)
{
    std::promise<pid_t> id;
    std::promise<void> end;
    std::thread thread([&] {
        id.set_value(gettid());
        end.get_future().wait();
    });
    EXPECT_FALSE(processIsAlive(static_cast<std::uint32_t>(id.get_future().get())));
    end.set_value();
    thread.join();
}

BRV_CHILD(withoutRobustList)
{
    syscall(SYS_set_robust_list, nullptr, sizeof(robust_list_head));
    childSay("ready");
    childHear();
    return 0;
}

/// The letter that the system gives for what the first thread of this process does.
char stateOfFirstThread()
{
    std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/stat");
    std::string text;
    std::getline(file, text);
    return text.substr(text.rfind(')') + 1, 2).back();
}

BRV_CHILD(firstThreadEnds)
{
    std::thread([] {
        while (stateOfFirstThread() != 'Z') {
            std::this_thread::yield();
        }
        childSay("ready");
        childHear();
        _exit(0);
    }).detach();
    pthread_exit(nullptr);
}

TEST(ProcessLife, IsSeenWhereTheQuickWayDoesNotTell)
{
    for (const char* kind : {"withoutRobustList", "firstThreadEnds"}) {
        Child child(kind);
        child.expectLine("ready");
        EXPECT_TRUE(processIsAlive(child.id())) << kind;
        child.closeInput();
        child.expectExit(0);
        EXPECT_FALSE(processIsAlive(child.id())) << kind;
    }
}

} // namespace
