#include "brvUtils/os/Process.h"

#include "brvUtils/os/linux/Errno.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sched.h>
#include <set>
#include <sys/resource.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

/// Linux keeps priority and affinity per thread: calls `change(thread)` for every thread of the process, until no new
/// one is found, since a thread that was not changed yet may have started another.
template <typename Change>
ErrorCode forEachThread(Change change)
{
    std::set<pid_t> changed;
    std::size_t before;
    do {
        before = changed.size();
        std::error_code fault;
        std::filesystem::directory_iterator entry("/proc/self/task", fault);
        for (; !fault && entry != std::filesystem::directory_iterator(); entry.increment(fault)) {
            const pid_t thread = std::atoi(entry->path().filename().c_str());
            if (changed.insert(thread).second && change(thread) != 0 && errno != ESRCH) {
                return fromErrno(errno);
            }
        }
        if (fault) {
            return fromErrno(fault.value());
        }
    } while (changed.size() != before);
    return error::none;
}

cpu_set_t setOf(ProcessorMask mask)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int i = 0; i < 64; ++i) {
        if ((mask >> i & 1U) != 0) {
            CPU_SET(i, &set);
        }
    }
    return set;
}

/// The processors of the computer, which the kernel lists as "0-3,8".
ProcessorMask systemProcessors()
{
    std::ifstream list("/sys/devices/system/cpu/online");
    list.imbue(std::locale::classic());
    ProcessorMask mask = 0;
    for (int first; list >> first; list.get()) {
        int last = first;
        if (list.peek() == '-') {
            list.get();
            list >> last;
        }
        for (int i = first; i <= last && i < 64; ++i) {
            mask |= ProcessorMask { 1 } << i;
        }
    }
    return mask;
}

} // namespace

std::string executablePath()
{
    std::error_code fault;
    return std::filesystem::read_symlink("/proc/self/exe", fault).string();
}

ErrorCode setPriorityClass(PriorityClass priority)
{
    if (priority == PriorityClass::high) {
        return forEachThread([](pid_t thread) { return setpriority(PRIO_PROCESS, static_cast<id_t>(thread), -10); });
    }
    sched_param parameters {};
    parameters.sched_priority = sched_get_priority_min(SCHED_RR); // ahead of all ordinary threads, and no more
    return forEachThread([&](pid_t thread) { return sched_setscheduler(thread, SCHED_RR, &parameters); });
}

ErrorCode processAffinity(ProcessorMask& process, ProcessorMask& system)
{
    process = 0;
    system = 0;
    cpu_set_t set;
    if (sched_getaffinity(getpid(), sizeof set, &set) != 0) {
        return fromErrno(errno);
    }
    for (int i = 0; i < 64; ++i) {
        process |= ProcessorMask { CPU_ISSET(i, &set) != 0 } << i;
    }
    system = systemProcessors() | process;
    return error::none;
}

ErrorCode setProcessAffinity(ProcessorMask mask)
{
    const cpu_set_t set = setOf(mask);
    return forEachThread([&](pid_t thread) { return sched_setaffinity(thread, sizeof set, &set); });
}

ErrorCode setThreadAffinity(ProcessorMask mask)
{
    const cpu_set_t set = setOf(mask);
    return sched_setaffinity(0, sizeof set, &set) == 0 ? error::none : fromErrno(errno);
}

} // namespace brvUtils::os
