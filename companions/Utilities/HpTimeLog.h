#pragma once

#include "Utilities/TimeIntervals.h"
#include "Utilities/export.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

/// When something happened, again and again, and so how regular it is. Recording costs one look at the monotonic clock: it
/// allocates nothing, locks nothing, and writes to memory that is there from the start.
///
/// One thread records. Any thread may ask for the intervals at the same time, and switch recording on and off. At global
/// scope for callers.
class UTILITIES_API HpTimeLog
{
public:
    /// 8 MiB: 17 minutes of a beat of 1 ms.
    static constexpr std::size_t defaultCapacity = std::size_t(1) << 20;

    /// Enabled, and empty.
    /// \param capacity how many time stamps are kept, 2 at least (fewer count as 2). The newest replaces the oldest when there
    ///        are more.
    /// \throw std::length_error, std::bad_alloc when there is no memory for that many.
    explicit HpTimeLog(std::size_t capacity = defaultCapacity);
    HpTimeLog(const HpTimeLog&) = delete;
    HpTimeLog& operator=(const HpTimeLog&) = delete;

    /// Whether record() does anything.
    bool isEnabled() const { return (series_.load(std::memory_order_relaxed) & 1) != 0; }

    /// Switches recording on or off; nothing when it is so already. What was recorded stays, and the time between the last
    /// stamp before a pause and the first one after it is no interval.
    void setEnabled(bool enabled);

    /// Takes down the time, when enabled. By one thread only.
    void record();

    /// The stamps recorded so far, together with those that newer ones replaced.
    std::uint64_t getRecordedCount() const { return count_.load(std::memory_order_acquire); }

    /// The intervals between the stamps that are kept, as they stand now; while recording goes on the very oldest may be left
    /// out. Takes time and memory in proportion to their number, so a thread that is to keep its beat asks for few.
    /// \param newest how many of them at most, the newest.
    Utilities::TimeIntervals getIntervals(std::size_t newest = static_cast<std::size_t>(-1)) const;

private:
    /// Nanoseconds of the monotonic clock, times two; odd for the first one after recording was switched on.
    using Stamp = std::atomic<std::uint64_t>;

    std::vector<Stamp> stamps_; ///< One more than are kept: the one that is being written.
    std::size_t next_ = 0; ///< Where the recording thread writes.
    std::uint32_t recordedSeries_ = 0; ///< The series of its last stamp.
    std::atomic<std::uint64_t> count_{0};
    std::atomic<std::uint32_t> series_{1}; ///< Odd while enabled; each change counts on.
};
