#pragma once

#include <cstdint>

namespace brvUtils::os {

/// The number by which the system knows this process; never 0.
std::uint32_t currentProcessId() noexcept;

/// Whether there is a process of that number that has not ended, whoever owns it. One that has ended is not alive, even if
/// something of it is still kept (a zombie, an open handle). Neither is 0, nor the number of a thread that is no process's.
/// Where the system does not let this process find out, it counts as alive. Below a microsecond for most processes.
bool processIsAlive(std::uint32_t id) noexcept;

} // namespace brvUtils::os
