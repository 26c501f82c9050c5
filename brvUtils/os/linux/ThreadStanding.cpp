#include "brvUtils/os/ThreadStanding.h"

#include <ctime>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brvUtils::os {

std::string standingOfThread()
{
    sched_param parameters{};
    sched_getparam(0, &parameters); // 0: this thread
    const std::string priority = std::to_string(parameters.sched_priority);
    const auto thread = static_cast<id_t>(syscall(SYS_gettid));
    const std::string nice = "nice " + std::to_string(getpriority(PRIO_PROCESS, thread));
    switch (sched_getscheduler(0) & ~SCHED_RESET_ON_FORK) {
    case SCHED_RR: return "round-robin " + priority;
    case SCHED_FIFO: return "first in, first out " + priority;
    case SCHED_IDLE: return "idle";
    case SCHED_BATCH: return "batch, " + nice;
    default: return "normal, " + nice;
    }
}

std::string steadyClockName()
{
    timespec resolution{};
    clock_getres(CLOCK_MONOTONIC, &resolution);
    return "CLOCK_MONOTONIC, " + std::to_string(resolution.tv_sec * 1'000'000'000 + resolution.tv_nsec) + " ns";
}

} // namespace brvUtils::os
