#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace brvTool {

/// Takes down how late a source of beats is. Beat number k is due k periods after the start. Each point of that grid counts as
/// served by the first beat at or behind it: a source that leaves out beats after a delay and one that makes up for them are
/// as late as each other. One thread beats, another may wait.
class BeatLog
{
public:
    BeatLog(double period, std::size_t count);

    /// The grid begins here: to be called right before the source is started.
    void start() { start_ = Clock::now(); }
    void beat();
    bool full() const { return served_.load(std::memory_order_acquire) == late_.size(); }

    /// In microseconds, in order of size; only of the beats that came. Once the source has stopped.
    std::vector<double> latenesses() const;

private:
    using Clock = std::chrono::steady_clock;

    std::chrono::duration<double> period_;
    Clock::time_point start_;
    std::vector<double> late_; ///< Microseconds, by beat.
    std::atomic<std::size_t> served_{0};
};

/// The value that so great a part of all are not above; 0 of none.
double percentile(const std::vector<double>& sorted, double part);

} // namespace brvTool
