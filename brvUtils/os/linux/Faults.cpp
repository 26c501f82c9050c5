#include "brvUtils/os/Faults.h"

#include <cstdint>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

/// Of the sanitizers' run-time libraries; null in programs without one.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* descriptor);

namespace brvUtils::os {

void endWithoutTraces()
{
    // One byte is too small for any core file, and tells the kernel to start no program that takes cores; 0 does not.
    const rlimit tiny{1, 1};
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_CORE, &tiny) != 0) {
        setrlimit(RLIMIT_CORE, &none);
    }
}

void pinFaultReports()
{
    if (__sanitizer_set_report_fd != nullptr) {
        const int copy = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(copy)));
    }
}

} // namespace brvUtils::os
