#pragma once

#include <algorithm>
#include <cstdint>

namespace brvUtils::os {

/// How long before its moment a thread has itself woken, so that it is there in time.
///
/// Being woken takes a while that depends on computer and load: tens of microseconds here. The lead follows what most
/// wakings took: late ones lengthen it by more than early ones shorten it. The rest of the time is spent looking at the
/// clock, so it stays below a part of the period, and below what people would miss of a processor.
class EarlyWake
{
public:
    /// \param period of the beats, in nanoseconds, as all times here.
    explicit EarlyWake(std::int64_t period)
        : longest_(std::min(period / partOfPeriod, longestEver))
        , lead_(longest_ / 2) // a guess, so that the first beats are no worse than the others
    {
    }

    std::int64_t lead() const { return lead_; }

    /// Takes in how late the thread ran after it wanted to be woken.
    void wokenAfter(std::int64_t delay)
    {
        lead_ = std::clamp(lead_ + (delay > lead_ ? longer : -shorter), std::int64_t{0}, longest_);
    }

private:
    // At rest the one in ten wakings is late that outweighs the nine others.
    static constexpr std::int64_t longer = 1'800;
    static constexpr std::int64_t shorter = 200;
    static constexpr std::int64_t partOfPeriod = 20;
    static constexpr std::int64_t longestEver = 100'000;

    std::int64_t longest_;
    std::int64_t lead_;
};

} // namespace brvUtils::os
