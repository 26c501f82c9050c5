#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <future>
#include <vector>

namespace timers {

/// How well a source of beats kept to its grid. Times are microseconds.
struct Lateness
{
    double median = 0;
    double percentile99 = 0;
    double maximum = 0;
    double drift = 0; ///< By how much the medians of the first and of the last hundred beats differ.
    double processor = 0; ///< Processor time of the whole process per beat.
};

/// Takes down how late a source beats.
///
/// Beat number k is due k periods after the source was told to start, whatever it is. Each point of that grid counts as
/// served by the first beat at or behind it: a source that leaves out beats after a delay and one that makes up for them
/// are as late as each other. One thread beats, another may wait.
class BeatLog
{
public:
    /// \param period in nanoseconds.
    /// \param count points of the grid to be served.
    BeatLog(std::int64_t period, std::size_t count);

    std::int64_t period() const { return period_; }
    /// In seconds, as the library has it.
    double seconds() const { return static_cast<double>(period_) * 1e-9; }

    /// The grid and the processor time begin here: to be called right before the source is started.
    void start();
    /// To be called when the source was started. False when that took so long that something else came in between: nobody
    /// knows then where the grid of the source lies, and it is to be started anew with another log.
    bool started() const;
    /// When that beat is due, on the steady clock in nanoseconds.
    std::int64_t due(std::size_t beat) const { return start_ + static_cast<std::int64_t>(beat) * period_; }

    /// The source lets its user go on now.
    void beat();
    /// Whether every point of the grid was served; a beat that comes later changes nothing.
    bool full() const { return served_ == late_.size(); }
    /// Waits for that without taking processor time.
    void waitUntilFull() { full_.get_future().wait(); }

    /// Only when it is full.
    Lateness result() const;

private:
    std::int64_t period_;
    std::int64_t start_ = 0;
    std::clock_t processorStart_ = 0;
    std::clock_t processorEnd_ = 0;
    std::vector<std::int64_t> late_; ///< Nanoseconds, by beat.
    std::size_t served_ = 0;
    std::promise<void> full_;
};

} // namespace timers
