#include "brvUtils/os/CrashFilter.h"

#include "brvUtils/os/CrashReport.h"
#include "brvUtils/os/linux/CrashException.h"
#include "brvUtils/os/linux/CrashLock.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/syscall.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

constexpr std::array<int, 6> crashSignals{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGSYS};

std::atomic<CrashFilter> currentFilter{nullptr};
CrashLock filterLock;

/// What shells say of a process that a signal ended.
int exitCodeOf(int signal)
{
    return 128 + signal;
}

[[noreturn]] void leaveToSystem(int signal)
{
    std::signal(signal, SIG_DFL);
    syscall(SYS_tgkill, getpid(), gettid(), signal);
    endCrashedProcess(exitCodeOf(signal)); // the signal is blocked
}

void handleCrash(int signal, siginfo_t* information, void* context)
{
    const int errorBefore = errno;
    if (!filterLock.take()) {
        endCrashedProcess(0); // within the filter
    }
    _EXCEPTION_POINTERS exception{information, static_cast<const ucontext_t*>(context), gettid()};
    const CrashFilter filter = currentFilter.load();
    switch (filter != nullptr ? filter(&exception) : crashGoesToSystem) {
    case crashEndsProcess: endCrashedProcess(exitCodeOf(signal));
    case crashGoesOn: break;
    default: leaveToSystem(signal);
    }
    filterLock.give();
    errno = errorBefore;
}

void takeSignal(int signal)
{
    struct sigaction action{};
    action.sa_sigaction = handleCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigaction(signal, &action, nullptr);
}

void giveSignalBack(int signal)
{
    struct sigaction action{};
    if (sigaction(signal, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) != 0 && action.sa_sigaction == handleCrash) {
        std::signal(signal, SIG_DFL);
    }
}

} // namespace

CrashFilter setCrashFilter(CrashFilter filter) noexcept
{
    const CrashFilter before = currentFilter.exchange(filter);
    for (const int signal : crashSignals) {
        filter != nullptr ? takeSignal(signal) : giveSignalBack(signal);
    }
    return before;
}

} // namespace brvUtils::os
