#include "brvUtils/ipc/SemaphoreWin32.h"

#include "brvUtils/ipc/internal/NewOrNull.h"
#include "brvUtils/ipc/internal/Timeout.h"
#include "brvUtils/os/Semaphore.h"
#include "brvUtils/startup/InstanceKey.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace brvUtils {

namespace {

constexpr os::Milliseconds lookInterval = 1000; // between looks for a dead taker

os::Semaphore* open(char const* name, bool initiallyFree, bool withInstance)
{
    if (name == nullptr || !withInstance) {
        return os::openSemaphore(name, initiallyFree).semaphore;
    }
    return os::openSemaphore(buildKeyWithInstance(name).c_str(), initiallyFree).semaphore;
}

void report(const std::string& name, os::WaitResult result)
{
    std::cerr << "Error waiting semaphore " << name << ": ";
    switch (result.status) {
    case os::WaitStatus::abandoned: std::cerr << "WAIT_ABANDONED"; break;
    case os::WaitStatus::timedOut: std::cerr << "WAIT_TIMEOUT"; break;
    case os::WaitStatus::failed: std::cerr << "WAIT_FAILED, last error = " << result.error; break;
    default: std::cerr << "Unkown error"; break; // spelling kept for callers
    }
    std::cerr << std::endl;
}

std::string describe(const os::DeadTaker& taker)
{
    if (taker.processId == 0) {
        return "a process";
    }
    return "process " + std::to_string(taker.processId) + (taker.program[0] != '\0' ? " (" + std::string(taker.program) + ")" : "");
}

} // namespace

ISemaphore::~ISemaphore() = default;

SemaphoreWin32::SemaphoreWin32(char const* name, bool initiallyFree, bool withInstance)
    : handle_(open(name, initiallyFree, withInstance))
    , name_(name != nullptr ? name : "unnamed")
{
    if (handle_ == nullptr) {
        std::printf("Creating semaphore failed : %s\n", name_.c_str());
    }
}

SemaphoreWin32::~SemaphoreWin32()
{
    os::closeSemaphore(handle_);
}

bool SemaphoreWin32::ask(double timeout)
{
    const os::WaitResult result = os::waitSemaphore(handle_, toMilliseconds(timeout));
    if (result.status == os::WaitStatus::signalled) {
        return true;
    }
    if (result.status != os::WaitStatus::timedOut || timeout != 0.0) {
        report(name_, result);
    }
    return false;
}

bool SemaphoreWin32::free()
{
    return os::releaseSemaphore(handle_) == os::error::none;
}

SemaphoreWin32::LockOutcome SemaphoreWin32::askAsLock(double timeout, std::string& deadTaker)
{
    const os::Milliseconds longestTurn = os::deadTakersAreKnown() ? lookInterval : os::infinite;
    os::Milliseconds rest = toMilliseconds(timeout);
    for (;;) {
        const os::Milliseconds turn = std::min(rest, longestTurn);
        const os::WaitResult result = os::waitSemaphore(handle_, turn);
        if (result.status == os::WaitStatus::signalled) {
            return LockOutcome::taken;
        }
        if (result.status == os::WaitStatus::timedOut) {
            if (const os::DeadTaker taker = os::releaseSemaphoreOfDeadTaker(handle_); taker.found) {
                deadTaker = describe(taker);
                return LockOutcome::takerDied;
            }
            rest = rest == os::infinite ? rest : rest - turn;
        }
        if (result.status != os::WaitStatus::timedOut || rest == 0) {
            if (result.status != os::WaitStatus::timedOut || timeout != 0.0) {
                report(name_, result);
            }
            return LockOutcome::refused;
        }
    }
}

ISemaphore* SemaphoreWin32::New(char const* name, bool initiallyFree, bool withInstance)
{
    return newOrNull<SemaphoreWin32>(name, initiallyFree, withInstance);
}

} // namespace brvUtils
