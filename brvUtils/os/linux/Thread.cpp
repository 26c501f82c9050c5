#include "brvUtils/os/Thread.h"

#include "brvUtils/os/CrashFilter.h"
#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/Futex.h"

#include <array>
#include <mutex>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>

namespace brvUtils::os {

struct Thread
{
    Thread(void (*run)(void*), void* with)
        : body(run)
        , argument(with)
    {
    }

    void (*const body)(void*);
    void* const argument;
    StateWord number{0}; ///< Of the thread in the kernel; 0 until it runs.
    StateWord ended{0};
    std::mutex alive; ///< Held while the number must not become another thread's.
    Thread* next = nullptr; ///< In the list of all.
};

namespace {

/// Every record of the process hangs here, since none is ever given back.
std::atomic<Thread*> allThreads{nullptr};

/// A forked child has none of its parent's threads, whatever was locked there.
void endAllInChild()
{
    for (Thread* thread = allThreads.load(); thread != nullptr; thread = thread->next) {
        thread->ended.store(1);
    }
}

void keep(Thread* thread)
{
    [[maybe_unused]] static const int registered = pthread_atfork(nullptr, nullptr, endAllInChild);
    thread->next = allThreads.load();
    while (!allThreads.compare_exchange_weak(thread->next, thread)) {
    }
}

void markEnded(void* record)
{
    auto* thread = static_cast<Thread*>(record);
    const std::lock_guard lock(thread->alive);
    thread->ended.store(1);
    futexWakeAll(thread->ended);
}

/// The system calls markEnded once the thread is through with the destructors of its thread-local objects. False where it
/// has no room to remember that.
bool marksItsEnd(Thread* thread)
{
    struct Key
    {
        pthread_key_t value{};
        bool made = pthread_key_create(&value, markEnded) == 0;
    };
    static const Key key;
    return key.made && pthread_setspecific(key.value, thread) == 0;
}

void* runBody(void* record) noexcept
{
    auto* thread = static_cast<Thread*>(record);
    const bool marked = marksItsEnd(thread);
    prepareThreadForCrash();
    thread->number.store(static_cast<std::uint32_t>(gettid()));
    futexWakeAll(thread->number);
    thread->body(thread->argument);
    if (!marked) {
        markEnded(thread);
    }
    return nullptr;
}

/// The thread's number in the kernel, once it has one.
pid_t numberOf(Thread& thread)
{
    std::uint64_t number;
    while ((number = thread.number.load()) == 0) {
        futexWait(thread.number, 0, nullptr);
    }
    return static_cast<pid_t>(number);
}

/// Calls `work(number)` unless the thread has ended, and keeps it from ending meanwhile.
template <typename Result, typename Work>
Result whileAlive(Thread& thread, Result otherwise, Work work)
{
    if (thread.ended.load() != 0) {
        return otherwise; // also in a forked child, where nobody gives the lock back
    }
    const pid_t number = numberOf(thread);
    const std::lock_guard lock(thread.alive);
    return thread.ended.load() == 0 ? work(number) : otherwise;
}

constexpr std::array<int, 6> niceOfPriority{0, 10, 5, 0, -5, -10}; // the first is the idle class

int classOf(pid_t number)
{
    const int policy = sched_getscheduler(number);
    return policy < 0 ? policy : policy & ~SCHED_RESET_ON_FORK;
}

bool isRealTime(pid_t number)
{
    const int policy = classOf(number);
    return policy == SCHED_RR || policy == SCHED_FIFO;
}

int niceOf(pid_t number)
{
    return getpriority(PRIO_PROCESS, static_cast<id_t>(number));
}

ErrorCode changeNice(pid_t number, int priority)
{
    const int nice = niceOfPriority[static_cast<std::size_t>(priority)];
    return setpriority(PRIO_PROCESS, static_cast<id_t>(number), nice) == 0 ? error::none : fromErrno(errno);
}

ErrorCode changeClass(pid_t number, int policy)
{
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(policy); // real-time: ahead of all ordinary threads, and no more
    return sched_setscheduler(number, policy, &parameters) == 0 ? error::none : fromErrno(errno);
}

ErrorCode changePriority(pid_t number, int priority)
{
    if (priority == lowestPriority) {
        return changeClass(number, SCHED_IDLE);
    }
    if (priority == highestPriority) {
        return changeClass(number, SCHED_RR);
    }
    // What may be refused comes first, so that a refusal leaves the thread as it was. Two things cannot be refused: to be
    // nicer, and to leave the real-time class, which whoever asks for less is to do in any case.
    const bool yields = isRealTime(number) || niceOf(number) < niceOfPriority[static_cast<std::size_t>(priority)];
    const ErrorCode first = yields ? changeClass(number, SCHED_OTHER) : changeNice(number, priority);
    if (first != error::none) {
        return first;
    }
    return yields ? changeNice(number, priority) : changeClass(number, SCHED_OTHER);
}

int priorityOfNice(int nice)
{
    for (std::size_t priority = 1; priority < niceOfPriority.size(); ++priority) {
        if (niceOfPriority[priority] == nice) {
            return static_cast<int>(priority);
        }
    }
    return normalPriority;
}

int readPriority(pid_t number)
{
    switch (classOf(number)) {
    case SCHED_IDLE: return lowestPriority;
    case SCHED_RR: return highestPriority;
    case SCHED_OTHER: break;
    default: return normalPriority;
    }
    return priorityOfNice(niceOf(number));
}

} // namespace

ThreadStart startThread(void (*body)(void*), void* argument) noexcept
{
    auto* thread = new (std::nothrow) Thread(body, argument);
    if (thread == nullptr) {
        return {nullptr, error::notEnoughMemory};
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t native{};
    const int fault = pthread_create(&native, &attributes, runBody, thread); // which inherits class and niceness
    pthread_attr_destroy(&attributes);
    if (fault != 0) {
        delete thread;
        return {nullptr, fromErrno(fault)};
    }
    keep(thread);
    if (const int own = sched_getscheduler(0); own >= 0 && (own & SCHED_RESET_ON_FORK) != 0 && isRealTime(0)) {
        setThreadPriority(thread, highestPriority); // a timer's own thread hands nothing on by itself
    }
    return {thread, error::none};
}

WaitResult waitThread(Thread* thread, Milliseconds timeout) noexcept
{
    if (thread == nullptr) {
        return {WaitStatus::failed, error::invalidHandle};
    }
    const Deadline deadline(monotonicNanoseconds(), timeout);
    while (thread->ended.load() == 0) {
        if (deadline.passed()) {
            return {WaitStatus::timedOut, error::none};
        }
        futexWait(thread->ended, 0, deadline.moment());
    }
    return {WaitStatus::signalled, error::none};
}

ErrorCode setThreadPriority(Thread* thread, int priority) noexcept
{
    if (priority < lowestPriority || priority > highestPriority) {
        return error::invalidParameter;
    }
    if (thread == nullptr) {
        return error::invalidHandle;
    }
    return whileAlive(*thread, ErrorCode{error::invalidHandle}, [&](pid_t number) { return changePriority(number, priority); });
}

int threadPriority(Thread* thread) noexcept
{
    return thread != nullptr ? whileAlive(*thread, normalPriority, readPriority) : normalPriority;
}

void yieldThread() noexcept
{
    sched_yield();
}

} // namespace brvUtils::os
