#pragma once

#include "brvUtils/os/Error.h"

#include <cstdint>
#include <string>

namespace brvUtils::os {

/// Full file name of the process's executable, in UTF-8; empty when the system does not tell. A path of more than 259
/// characters is cut on Windows.
std::string executablePath();

enum class PriorityClass {
    high, ///< Ahead of ordinary processes.
    realTime ///< Ahead of everything that is not real-time itself.
};

/// Gives the whole process, with the threads it has now and starts later, another priority. A refusal is an error; the
/// threads may then differ.
ErrorCode setPriorityClass(PriorityClass priority);

/// A set of processors: bit n is processor n. Processors from 64 on cannot be named.
using ProcessorMask = std::uint64_t;

/// The processors that this process may run on, and those that the computer has. Both are 0 after an error.
ErrorCode processAffinity(ProcessorMask& process, ProcessorMask& system);

/// Binds the process, with the threads it has now and starts later, or the calling thread alone.
ErrorCode setProcessAffinity(ProcessorMask mask);
ErrorCode setThreadAffinity(ProcessorMask mask);

} // namespace brvUtils::os
