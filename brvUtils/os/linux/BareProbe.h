#pragma once

#include <cstdint>
#include <signal.h>

namespace brvUtils::os {

/// The cheapest question about a process. It takes zombies and threads for living processes, and those of other users for
/// dead ones. For benchmarks to compare with.
inline bool bareProbe(std::uint32_t id)
{
    return kill(static_cast<pid_t>(id), 0) == 0;
}

} // namespace brvUtils::os
