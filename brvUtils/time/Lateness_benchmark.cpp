#include "brvUtils/time/Lateness_benchmark.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace timers {

namespace {

/// Clocks that are read one after the other may differ by that much: a beat so little before its moment belongs to it.
constexpr std::int64_t tolerance = 10'000;

/// A thread is started in less.
constexpr std::int64_t longestStart = 100'000;

std::int64_t now()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// The value that so great a part of all are not above, in microseconds.
double percentile(std::vector<std::int64_t> values, double part)
{
    const auto rank = static_cast<std::ptrdiff_t>(std::ceil(part * static_cast<double>(values.size())));
    const auto place = values.begin() + std::max(rank - 1, std::ptrdiff_t{0});
    std::nth_element(values.begin(), place, values.end());
    return static_cast<double>(*place) * 1e-3;
}

} // namespace

BeatLog::BeatLog(std::int64_t period, std::size_t count)
    : period_(period)
    , late_(count)
{
}

void BeatLog::start()
{
    processorStart_ = std::clock();
    start_ = now();
}

bool BeatLog::started() const
{
    return now() - start_ < longestStart;
}

void BeatLog::beat()
{
    const std::int64_t moment = now();
    if (full()) {
        return;
    }
    while (!full() && due(served_ + 1) <= moment + tolerance) {
        late_[served_] = moment - due(served_ + 1);
        ++served_;
    }
    if (full()) {
        processorEnd_ = std::clock();
        full_.set_value();
    }
}

Lateness BeatLog::result() const
{
    const auto some = static_cast<std::ptrdiff_t>(std::min(late_.size() / 2, std::size_t{100}));
    const std::vector<std::int64_t> first(late_.begin(), late_.begin() + some);
    const std::vector<std::int64_t> last(late_.end() - some, late_.end());
    return {percentile(late_, 0.5), percentile(late_, 0.99), percentile(late_, 1),
        std::fabs(percentile(last, 0.5) - percentile(first, 0.5)),
        static_cast<double>(processorEnd_ - processorStart_) * 1e6 / CLOCKS_PER_SEC / static_cast<double>(late_.size())};
}

} // namespace timers
