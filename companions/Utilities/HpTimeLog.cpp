#include "Utilities/HpTimeLog.h"

#include <algorithm>
#include <chrono>
#include <utility>

HpTimeLog::HpTimeLog(std::size_t capacity)
    : stamps_(std::clamp<std::size_t>(capacity, 2, static_cast<std::size_t>(-2)) + 1) // too many are for the vector to refuse
{
    // Also touches the memory, whose pages the system gives at the first write only.
    for (Stamp& stamp : stamps_) {
        stamp.store(0, std::memory_order_relaxed);
    }
}

void HpTimeLog::setEnabled(bool enabled)
{
    std::uint32_t series = series_.load();
    while (((series & 1) != 0) != enabled && !series_.compare_exchange_weak(series, series + 1)) {
    }
}

void HpTimeLog::record()
{
    const std::uint32_t series = series_.load(std::memory_order_relaxed);
    if ((series & 1) == 0) {
        return;
    }
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const std::uint64_t time = static_cast<std::uint64_t>(std::chrono::nanoseconds(now).count());
    const std::uint64_t first = series != recordedSeries_;
    recordedSeries_ = series;
    // Released, so that a reader who sees this stamp also sees that its predecessor was counted.
    stamps_[next_].store(time * 2 + first, std::memory_order_release);
    next_ = next_ + 1 == stamps_.size() ? 0 : next_ + 1;
    count_.store(count_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

Utilities::TimeIntervals HpTimeLog::getIntervals(std::size_t newest) const
{
    const std::uint64_t capacity = stamps_.size() - 1;
    const std::uint64_t wanted = newest < capacity ? newest + std::uint64_t(1) : capacity;
    const std::uint64_t end = count_.load(std::memory_order_acquire);
    const std::uint64_t begin = end > wanted ? end - wanted : 0;
    std::vector<std::uint64_t> stamps;
    stamps.reserve(static_cast<std::size_t>(end - begin));
    for (std::uint64_t i = begin; i < end; ++i) {
        stamps.push_back(stamps_[static_cast<std::size_t>(i % stamps_.size())].load(std::memory_order_acquire));
    }
    // Those that were replaced meanwhile do not count.
    const std::uint64_t now = count_.load(std::memory_order_relaxed);
    const std::uint64_t replaced = now > capacity ? now - capacity : 0;

    std::vector<std::int64_t> lengths;
    lengths.reserve(stamps.size());
    for (std::uint64_t i = std::max(begin, replaced) + 1; i < end; ++i) {
        const std::size_t place = static_cast<std::size_t>(i - begin);
        if ((stamps[place] & 1) == 0) {
            lengths.push_back(static_cast<std::int64_t>(stamps[place] / 2 - stamps[place - 1] / 2));
        }
    }
    return Utilities::TimeIntervals(std::move(lengths), replaced);
}
