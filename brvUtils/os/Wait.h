#pragma once

#include "brvUtils/os/Error.h"

namespace brvUtils::os {

/// A length of time to wait, in whole milliseconds on the monotonic clock. 0 polls.
using Milliseconds = std::uint32_t;

/// Waits without limit.
constexpr Milliseconds infinite = 0xFFFFFFFFu;

/// How a wait ended.
enum class WaitStatus : std::uint32_t {
    signalled, ///< What was waited for is there, and taken where it can be taken.
    timedOut, ///< The time is over; nothing was taken.
    abandoned, ///< The system says that the owner died while holding it. Never with the objects of this layer.
    failed ///< The wait was not possible; WaitResult::error says why.
};

/// The outcome of a wait.
struct WaitResult
{
    WaitStatus status;
    ErrorCode error; ///< Of a failed wait; 0 otherwise.
};

} // namespace brvUtils::os
