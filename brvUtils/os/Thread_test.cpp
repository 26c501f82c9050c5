#include "brvUtils/os/Thread.h"

#include <gtest/gtest.h>

#include <future>

namespace {

using namespace brvUtils::os;

/// A thread that runs until the object lets it go.
class WaitingThread
{
public:
    WaitingThread()
    {
        const ThreadStart started = startThread([](void* self) { static_cast<WaitingThread*>(self)->released_.get_future().wait(); }, this);
        EXPECT_EQ(started.error, error::none);
        thread_ = started.thread;
    }
    ~WaitingThread() { end(); }

    Thread* get() const { return thread_; }

    /// Programs may be started at any niceness.
    bool beganAtNormal() const { return threadPriority(thread_) == normalPriority; }

    void end()
    {
        if (!ended_) {
            ended_ = true;
            released_.set_value();
            EXPECT_EQ(waitThread(thread_, infinite).status, WaitStatus::signalled);
        }
    }

private:
    std::promise<void> released_;
    Thread* thread_ = nullptr;
    bool ended_ = false;
};

TEST(Thread, CanBeWaitedForAlsoAfterItsEnd)
{
    WaitingThread thread;
    EXPECT_EQ(waitThread(thread.get(), 0).status, WaitStatus::timedOut);
    EXPECT_EQ(waitThread(thread.get(), 20).status, WaitStatus::timedOut);
    thread.end();
    EXPECT_EQ(waitThread(thread.get(), 0).status, WaitStatus::signalled);
    EXPECT_EQ(waitThread(nullptr, 0).status, WaitStatus::failed);
}

TEST(Thread, HasThePriorityThatItWasGivenUnlessTheSystemRefuses)
{
    WaitingThread thread;
    if (!thread.beganAtNormal()) {
        GTEST_SKIP() << "this program was started with another priority";
    }
    int expected = normalPriority;
    for (const int priority : {2, 1, 0, 3, 4, 5, 6, 3, 6, 0}) {
        const ErrorCode result = setThreadPriority(thread.get(), priority);
        EXPECT_TRUE(result == error::none || result == error::accessDenied) << result;
        expected = result == error::none ? priority : expected;
        EXPECT_EQ(threadPriority(thread.get()), expected) << "after " << priority;
    }
    for (const int priority : {-1, 7}) {
        EXPECT_EQ(setThreadPriority(thread.get(), priority), error::invalidParameter);
        EXPECT_EQ(threadPriority(thread.get()), expected);
    }
}

TEST(Thread, ThatHasEndedTakesNoPriority)
{
    WaitingThread thread;
    EXPECT_EQ(setThreadPriority(thread.get(), 1), error::none) << "less is allowed to everybody";
    thread.end();
    EXPECT_EQ(setThreadPriority(thread.get(), 1), error::invalidHandle);
    EXPECT_EQ(setThreadPriority(nullptr, 1), error::invalidHandle);
    EXPECT_EQ(threadPriority(nullptr), normalPriority);
}

TEST(Thread, BeginsAtThePriorityOfItsStarter)
{
    struct Nested
    {
        std::promise<void> lowered;
        std::promise<Thread*> inner;
        std::promise<void> released;
    } nested;
    const ThreadStart outer = startThread(
        [](void* argument) {
            auto& all = *static_cast<Nested*>(argument);
            all.lowered.get_future().wait();
            const auto wait = [](void* released) { static_cast<std::promise<void>*>(released)->get_future().wait(); };
            all.inner.set_value(startThread(wait, &all.released).thread);
        },
        &nested);
    EXPECT_EQ(setThreadPriority(outer.thread, 1), error::none);
    nested.lowered.set_value();
    Thread* const inner = nested.inner.get_future().get();
    EXPECT_EQ(threadPriority(inner), 1);
    nested.released.set_value();
    EXPECT_EQ(waitThread(inner, infinite).status, WaitStatus::signalled);
    EXPECT_EQ(waitThread(outer.thread, infinite).status, WaitStatus::signalled);
}

} // namespace
