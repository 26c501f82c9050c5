#pragma once

#include "brvUtils/os/linux/RecordLock.h"

namespace brvUtils::os {

/// The bytes of a table that a process has locked, as the system tells it in /proc. Nothing when this user may not look into
/// the process, or there is none.
/// \param table open on the file.
std::vector<LockedRange> tableLocksOfProcess(std::uint32_t processId, int table);

} // namespace brvUtils::os
