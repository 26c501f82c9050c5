#include "BeatLog.h"

#include <algorithm>
#include <cmath>

namespace brvTool {

BeatLog::BeatLog(double period, std::size_t count)
    : period_(period)
    , late_(count)
{
}

void BeatLog::beat()
{
    // Clocks that are read one after the other may differ by that much: a beat so little before its moment belongs to it.
    constexpr std::chrono::duration<double> tolerance{10e-6};
    const std::chrono::duration<double> moment = Clock::now() - start_;
    std::size_t served = served_.load(std::memory_order_relaxed);
    while (served < late_.size() && period_ * (served + 1) <= moment + tolerance) {
        late_[served] = std::max(0.0, (moment - period_ * (served + 1)).count() * 1e6);
        ++served;
    }
    served_.store(served, std::memory_order_release);
}

std::vector<double> BeatLog::latenesses() const
{
    std::vector<double> sorted(late_.begin(), late_.begin() + static_cast<std::ptrdiff_t>(served_.load(std::memory_order_acquire)));
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

double percentile(const std::vector<double>& sorted, double part)
{
    const auto rank = static_cast<std::size_t>(std::ceil(part * static_cast<double>(sorted.size())));
    return sorted.empty() ? 0 : sorted[std::min(std::max(rank, std::size_t{1}), sorted.size()) - 1];
}

} // namespace brvTool
