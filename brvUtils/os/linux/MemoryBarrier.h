#pragma once

#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>

/// One half of a barrier that costs its other half nothing: a process that has registered needs no barrier of its own
/// between a store and a load, because whoever depends on their order makes the kernel run one on its processors.
namespace brvUtils::os {

/// Lets barrierEverywhere reach this process. False where the kernel or a container does not allow it.
inline bool registerForBarriers()
{
    static const bool registered = syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_GLOBAL_EXPEDITED, 0, 0) == 0;
    return registered;
}

/// A full memory barrier on every processor that runs a registered process. False where that is not allowed.
inline bool barrierEverywhere()
{
    return syscall(SYS_membarrier, MEMBARRIER_CMD_GLOBAL_EXPEDITED, 0, 0) == 0;
}

} // namespace brvUtils::os
