#include "brvUtils/os/DumpFile.h"

#include "testing/TemporaryFolder.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

namespace os = brvUtils::os;

int pipeEnds[2];
bool told = false; ///< By the child, in its parent's memory.

/// Begins to start a program, by a thread that waits until it has started; it never does.
void* startNever(void*)
{
    const pid_t child = vfork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const pid_t self = getpid();
        told = true;
        if (write(pipeEnds[1], &self, sizeof self) != sizeof self) {
            told = false;
        }
        for (;;) {
            pause();
        }
    }
    return nullptr;
}

TEST(DumpFile, isGivenUpWhenAThreadCannotBeHalted)
{
    ASSERT_EQ(pipe(pipeEnds), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, startNever, nullptr), 0);
    pid_t startsNever = 0;
    ASSERT_EQ(read(pipeEnds[0], &startsNever, sizeof startsNever), static_cast<ssize_t>(sizeof startsNever));
    if (!told) {
        kill(startsNever, SIGKILL);
        pthread_join(thread, nullptr);
        GTEST_SKIP() << "vfork is a fork where the thread sanitizer is";
    }
    const brvTesting::TemporaryFolder folder;
    const std::string file = folder.file("now.dmp");
    EXPECT_FALSE(os::writeDumpFile(file.c_str(), os::DumpContents::normal, nullptr)); // takes the patience of a copy
    kill(startsNever, SIGKILL);
    pthread_join(thread, nullptr);
    EXPECT_FALSE(std::filesystem::exists(file));

    EXPECT_TRUE(os::writeDumpFile(file.c_str(), os::DumpContents::normal, nullptr));
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

} // namespace
