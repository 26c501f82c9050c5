#include "brvUtils/os/linux/SemaphoreWord.h"

#include "brvUtils/os/Semaphore.h"
#include "brvUtils/os/linux/Handle.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

BRV_CHILD(halfReleaser)
{
    Semaphore* lock = openSemaphore(arguments[0].c_str(), true).semaphore;
    useAsLock(lock);
    childSay(waitSemaphore(lock, 0).status == WaitStatus::signalled ? "taken" : "failed");
    childHear();
    SemaphoreWord(*handleOf(lock)->state).clearTaker();
    childSay("released");
    childHear(); // killed here, before it wakes anybody
    return 0;
}

TEST(SemaphoreWord, AReleaserThatIsKilledBeforeItWakesAnybodyIsNotWaitedForForEver)
{
    const std::string name = uniqueName();
    Semaphore* lock = openSemaphore(name.c_str(), true).semaphore;
    const SemaphoreWord word(*handleOf(lock)->state);
    Child child("halfReleaser", {name});
    child.expectLine("taken");
    std::thread waiter([&] { EXPECT_EQ(waitSemaphore(lock, infinite).status, WaitStatus::signalled); });
    while ((word.load() & SemaphoreWord::hasSleepers) == 0) {
        std::this_thread::yield();
    }
    child.send("release");
    child.expectLine("released");
    child.kill();
    waiter.join();
    closeSemaphore(lock);
}

} // namespace
