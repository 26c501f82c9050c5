#pragma once

#include "brvUtils/os/Wait.h"

#include <ctime>

namespace brvUtils::os {

inline std::int64_t monotonicNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

/// The moment at which a wait ends, on the monotonic clock.
class Deadline
{
public:
    Deadline(std::int64_t start, Milliseconds timeout)
        : limited_(timeout != infinite)
    {
        const std::int64_t end = start + timeout * std::int64_t{1'000'000};
        moment_.tv_sec = end / 1'000'000'000;
        moment_.tv_nsec = end % 1'000'000'000;
    }

    /// For the kernel's waits: null when there is no limit.
    const timespec* moment() const { return limited_ ? &moment_ : nullptr; }

    bool passed() const { return limited_ && monotonicNanoseconds() >= nanoseconds(); }

    /// The one of both that comes first.
    Deadline earlier(const Deadline& other) const
    {
        return !limited_ || (other.limited_ && other.nanoseconds() < nanoseconds()) ? other : *this;
    }

private:
    std::int64_t nanoseconds() const { return moment_.tv_sec * std::int64_t{1'000'000'000} + moment_.tv_nsec; }

    bool limited_;
    timespec moment_{};
};

} // namespace brvUtils::os
