#include "Utilities/CriticalSectionWrapper.h"

#include <gtest/gtest.h>

#include <future>

namespace {

bool anotherThreadCanTake(Utilities::CriticalSectionWrapper& lock)
{
    return std::async(std::launch::async, [&lock] {
        const bool taken = lock.tryLock();
        if (taken) {
            lock.unlock();
        }
        return taken;
    }).get();
}

TEST(CriticalSectionWrapper, IsTheOwnersUntilGivenBackAsOftenAsTaken)
{
    Utilities::CriticalSectionWrapper lock;
    {
        const std::lock_guard<Utilities::CriticalSectionWrapper> scope(lock);
        EXPECT_TRUE(lock.tryLock());
        lock.unlock();
        EXPECT_FALSE(anotherThreadCanTake(lock));
    }
    EXPECT_TRUE(anotherThreadCanTake(lock));
}

} // namespace
