#pragma once

#include "Utilities/export.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace Utilities {

/// How long the intervals between events were: what an HpTimeLog found, as it stood when it was asked.
///
/// Lengths are in seconds, exact to a nanosecond. Where there are no intervals every number is 0. Any thread may ask.
class UTILITIES_API TimeIntervals
{
public:
    /// Intervals with `from <= length < to`.
    struct Bin
    {
        double from; ///< Seconds.
        double to; ///< Seconds.
        std::size_t count; ///< Of intervals in it.
    };

    /// \param nanoseconds how long each one was, in any order; 0 to a hundred years.
    /// \param replacedStamps time stamps that newer ones had replaced, for toText() and writeCsv() to tell.
    explicit TimeIntervals(std::vector<std::int64_t> nanoseconds, std::uint64_t replacedStamps = 0);

    /// How many intervals there are.
    std::size_t count() const;
    /// The shortest one.
    double minimum() const;
    /// Their sum divided by their number, to the nanosecond.
    double mean() const;
    /// The longest one.
    double maximum() const;

    /// The shortest length that at least `percent` of all intervals do not exceed: percentile(50) is the median.
    /// \param percent 0 or less (and NaN) gives the minimum, 100 or more the maximum.
    double percentile(double percent) const;

    /// The same of the intervals' distances from the median, whichever side they are on: 0 or more.
    double jitter(double percent) const;

    /// Bins from the minimum to the maximum, each beginning where the one before ends: fine around the median (2 us wide),
    /// wider with the distance from it (the bounds are 1, 2, 5, 10, 20, 50... us away). The first and the last one hold
    /// something, and none begins below 0. No bins without intervals.
    std::vector<Bin> histogram() const;

    /// All of it as a table for people, in microseconds; several lines, each with its line end.
    std::string toText() const;

    /// All of it as lines of three columns, `quantity,parameter,value`, under any locale; lengths are whole nanoseconds. The
    /// parameter is that of a percentile, and of `histogram_ns` where a bin begins (it ends where the next one begins).
    /// What became of it is for the stream to say.
    void writeCsv(std::ostream& stream) const;

private:
    struct Range
    {
        std::int64_t from;
        std::int64_t to;
        std::size_t count;
    };

    std::int64_t ranked(double percent) const;
    std::int64_t rankedJitter(double percent) const;
    std::int64_t roundedMean() const;
    std::vector<Range> ranges() const;

    std::vector<std::int64_t> lengths_; ///< Nanoseconds, ascending.
    std::uint64_t replacedStamps_;
};

} // namespace Utilities
