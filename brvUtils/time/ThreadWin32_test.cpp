#include "brvUtils/time/ThreadWin32.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "testing/Child.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <stdexcept>

namespace {

using namespace brvUtils;

class Action : public ThreadAction
{
public:
    explicit Action(std::function<bool()> work)
        : work_(std::move(work))
    {
    }
    bool execute() override { return work_(); }

private:
    std::function<bool()> work_;
};

/// Work that stays in its call until it is let go on.
struct SlowWork
{
    std::atomic<int> calls{0};
    std::promise<void> begun;
    std::promise<void> released;
    std::shared_future<void> go{released.get_future()};

    bool operator()()
    {
        if (++calls == 1) {
            begun.set_value();
        }
        go.wait();
        return true;
    }
};

struct Counter
{
    std::atomic<int> calls{0};
    bool count()
    {
        ++calls;
        return true;
    }
    bool countOnce()
    {
        ++calls;
        return false;
    }
    void await(int least) const
    {
        while (calls < least) {
        }
    }
};

TEST(ThreadWin32, WorksUntilItIsStoppedAndNeverAgain)
{
    Counter counter;
    ThreadWin32 thread(SemaphoreWin32::New, new ThreadMemberFunction<Counter>(&counter, &Counter::count), true);
    counter.await(100);
    EXPECT_TRUE(thread.stop(10.0));
    const int calls = counter.calls;
    EXPECT_FALSE(thread.stop(10.0)) << "nothing runs any more";

    thread.start();
    EXPECT_TRUE(thread.stop(10.0));
    EXPECT_EQ(counter.calls, calls) << "a stop is final";
}

TEST(ThreadWin32, IsNotRunningBeforeItWasStarted)
{
    Counter counter;
    ThreadWin32 thread(SemaphoreWin32::New, new ThreadMemberFunction<Counter>(&counter, &Counter::count), false);
    ASSERT_TRUE(thread.getProtectionObject()->ask(0.0)) << "it is free";
    EXPECT_FALSE(thread.stop(0.0)) << "without a look at the semaphore, which is taken";
    EXPECT_FALSE(thread.setPriority(IThread::PRIORITY_NORMAL));
    EXPECT_EQ(thread.getPriority(), IThread::PRIORITY_NORMAL);
    EXPECT_TRUE(thread.getProtectionObject()->free());
    EXPECT_EQ(counter.calls, 0);
}

TEST(ThreadWin32, StopDoesNotInterruptACall)
{
    SlowWork work;
    ThreadWin32 thread(SemaphoreWin32::New, new Action(std::ref(work)), true);
    thread.start();
    work.begun.get_future().wait();
    EXPECT_FALSE(thread.stop(0.05));
    EXPECT_FALSE(thread.stop(0.0)) << "it counts as running, and can be stopped again";
    work.released.set_value();
    EXPECT_TRUE(thread.stop(10.0));
    EXPECT_EQ(work.calls, 1) << "one thread only, and no further call";
}

TEST(ThreadWin32, ThatFinishedStaysRunningForItsOwnerUntilStopped)
{
    Counter counter;
    ThreadWin32 thread(SemaphoreWin32::New, new ThreadMemberFunction<Counter>(&counter, &Counter::countOnce), true);
    counter.await(1);
    thread.start();
    EXPECT_TRUE(thread.stop(10.0));
    EXPECT_EQ(counter.calls, 1);
}

TEST(ThreadWin32, StopsItselfOnlyBehindItsCall)
{
    std::promise<IThread*> self;
    std::atomic<int> calls{0};
    bool stopped = true;
    ThreadWin32 thread(SemaphoreWin32::New, new Action([&, known = self.get_future().share()] {
        stopped = known.get()->stop(0.02);
        ++calls;
        return true;
    }), true);
    self.set_value(&thread);
    while (calls == 0) {
    }
    EXPECT_TRUE(thread.stop(10.0));
    EXPECT_FALSE(stopped) << "it cannot wait for itself";
    EXPECT_EQ(calls, 1);
}

int ownPriority()
{
    SlowWork work;
    ThreadWin32 thread(SemaphoreWin32::New, new Action(std::ref(work)), true);
    const int priority = thread.getPriority();
    work.released.set_value();
    thread.stop(10.0);
    return priority;
}

TEST(ThreadWin32, OffsetsStayWithinTheScale)
{
    if (ownPriority() != IThread::PRIORITY_NORMAL) {
        GTEST_SKIP() << "this program was started with another priority";
    }
    const auto offset = [](int steps) {
        SlowWork work;
        ThreadWin32 thread(SemaphoreWin32::New, new Action(std::ref(work)), false);
        thread.startWithPriorityOffset(steps);
        const int priority = thread.getPriority();
        EXPECT_FALSE(thread.setPriority(-1));
        EXPECT_FALSE(thread.setPriority(7));
        EXPECT_EQ(thread.getPriority(), priority);
        work.released.set_value();
        thread.stop(10.0);
        return priority;
    };
    EXPECT_EQ(offset(0), 3);
    EXPECT_EQ(offset(-1), 2);
    EXPECT_EQ(offset(-4), 0);
    EXPECT_EQ(offset(-2147483647 - 1), 0);
    const int most = offset(2147483647);
    EXPECT_TRUE(most == 6 || most == 3) << most << ": what the system refuses changes nothing";
}

/// A semaphore that can be had or not, as the test likes.
struct FickleSemaphore : SemaphoreWin32
{
    static ISemaphore* New(char const* name, bool free, bool instance) { return new FickleSemaphore(name, free, instance); }
    static inline std::atomic<bool> willing{true};
    using SemaphoreWin32::SemaphoreWin32;
    bool ask(double timeout) override { return willing && SemaphoreWin32::ask(timeout); }
};

TEST(ThreadWin32, StopThrowsWhenTheRequestCannotBeLeft)
{
    FickleSemaphore::willing = true;
    SlowWork work;
    ThreadWin32 thread(FickleSemaphore::New, new Action(std::ref(work)), true);
    work.begun.get_future().wait();
    FickleSemaphore::willing = false;
    try {
        thread.stop(1.0);
        FAIL() << "nothing thrown";
    } catch (const SemaphoreSynchroError& error) {
        EXPECT_STREQ(error.what(), "ThreadWin32 : Problem to access thread specific data (endThread)");
    }
    FickleSemaphore::willing = true;
    EXPECT_FALSE(thread.stop(0.0)) << "nothing has changed";
    work.released.set_value();
    EXPECT_TRUE(thread.stop(10.0));
}

BRV_CHILD(throwingAction)
{
    ThreadWin32 thread(SemaphoreWin32::New, new Action([]() -> bool { throw std::runtime_error("out of fuel"); }), true);
    brvTesting::childHear(); // nothing ever comes
    return 0;
}

TEST(ThreadWin32, WhatItsWorkThrowsEndsTheProcess)
{
    brvTesting::Child child("throwingAction");
    child.expectAbort();
    EXPECT_NE(child.err().find("out of fuel"), std::string::npos) << child.err();
}

} // namespace
