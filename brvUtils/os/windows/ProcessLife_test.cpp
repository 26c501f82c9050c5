#include "brvUtils/os/ProcessLife.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <future>
#include <thread>

namespace {

TEST(ProcessLife, ThreadsAreNoProcesses)
{
    std::promise<DWORD> id;
    std::promise<void> end;
    std::thread thread([&] {
        id.set_value(GetCurrentThreadId());
        end.get_future().wait();
    });
    EXPECT_FALSE(brvUtils::os::processIsAlive(id.get_future().get()));
    end.set_value();
    thread.join();
}

} // namespace
