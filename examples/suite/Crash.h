#pragma once

#include <string>
#include <utility>

namespace suite {

/// A crash on purpose, for those who want to see what becomes of one. One thread at a time.
class CrashOnPurpose
{
public:
    /// Whether there is a crash of that kind: "null" writes where no memory is, "overflow" takes all of the stack, "division"
    /// divides by zero, "abort" calls that, "exception" throws what nobody catches, "thread" is as "null" on another thread.
    /// "" is none.
    static bool isKind(const std::string& kind);

    /// \param kind see above. \param after seconds.
    CrashOnPurpose(std::string kind, double after)
        : kind_(std::move(kind))
        , after_(after)
    {
    }

    /// \param now seconds since the start. When that is late enough it does not return, or not for long where a thread crashes.
    void crashWhenDue(double now) const;

private:
    std::string kind_;
    double after_;
};

} // namespace suite
