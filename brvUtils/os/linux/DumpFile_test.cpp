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

/// A program to start, by a thread that waits until it has started; it never does.
pid_t startsNever = 0;
int pipeEnds[2];
bool told = false;

void* startNever(void*)
{
    const pid_t child = vfork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        startsNever = getpid();
        told = write(pipeEnds[1], "", 1) == 1;
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
    char letter = 0;
    ASSERT_EQ(read(pipeEnds[0], &letter, 1), 1);
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
