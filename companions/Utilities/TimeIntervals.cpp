#include "Utilities/TimeIntervals.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <utility>

namespace Utilities {

namespace {

constexpr double secondsPerNanosecond = 1e-9;

/// What toText() and writeCsv() tell of.
const struct
{
    double percent;
    const char* text;
} percentiles[] = {{50.0, "50"}, {90.0, "90"}, {99.0, "99"}, {99.9, "99.9"}};

double inSeconds(std::int64_t nanoseconds)
{
    return static_cast<double>(nanoseconds) * secondsPerNanosecond;
}

/// The place of a percentile among `count` ascending values, of which there is one at least.
std::size_t rank(double percent, std::size_t count)
{
    if (!(percent > 0.0)) {
        return 0;
    }
    // Percents are mostly not exact in binary: 99.9 of 1000 is the 999th, not the 1000th.
    const double atLeast = std::ceil(std::min(percent, 100.0) / 100.0 * static_cast<double>(count) - 1e-6);
    return std::clamp<std::size_t>(static_cast<std::size_t>(std::max(atLeast, 1.0)), 1, count) - 1;
}

/// Bounds of bins, from the one at or below `first` to the one above `last`, as distances from the median.
std::vector<std::int64_t> bounds(std::int64_t first, std::int64_t last)
{
    std::vector<std::int64_t> distances;
    const std::int64_t farthest = std::max(std::abs(first), std::abs(last));
    for (std::int64_t decade = 1000;; decade *= 10) {
        distances.insert(distances.end(), {decade, 2 * decade, 5 * decade});
        if (distances.back() > farthest) {
            break;
        }
    }
    std::vector<std::int64_t> result;
    std::transform(distances.rbegin(), distances.rend(), std::back_inserter(result), [](std::int64_t each) { return -each; });
    result.insert(result.end(), distances.begin(), distances.end());
    const auto above = std::upper_bound(result.begin(), result.end(), last);
    result.erase(above + 1, result.end());
    result.erase(result.begin(), std::upper_bound(result.begin(), result.end(), first) - 1);
    return result;
}

/// Microseconds with one decimal, whatever the locale.
std::string inMicroseconds(std::int64_t nanoseconds)
{
    const std::int64_t tenths = (std::abs(nanoseconds) + 50) / 100;
    const std::string sign = nanoseconds < 0 && tenths > 0 ? "-" : "";
    return sign + std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

std::string rightAligned(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string leftAligned(const std::string& text, std::size_t width)
{
    return text + std::string(width - std::min(width, text.size()), ' ');
}

} // namespace

TimeIntervals::TimeIntervals(std::vector<std::int64_t> nanoseconds, std::uint64_t replacedStamps)
    : lengths_(std::move(nanoseconds))
    , replacedStamps_(replacedStamps)
{
    std::sort(lengths_.begin(), lengths_.end());
}

std::size_t TimeIntervals::count() const
{
    return lengths_.size();
}

double TimeIntervals::minimum() const
{
    return percentile(0.0);
}

double TimeIntervals::mean() const
{
    double sum = 0.0;
    for (const std::int64_t each : lengths_) {
        sum += static_cast<double>(each);
    }
    return lengths_.empty() ? 0.0 : sum / static_cast<double>(lengths_.size()) * secondsPerNanosecond;
}

double TimeIntervals::maximum() const
{
    return percentile(100.0);
}

double TimeIntervals::percentile(double percent) const
{
    return inSeconds(ranked(percent));
}

double TimeIntervals::jitter(double percent) const
{
    return inSeconds(rankedJitter(percent));
}

std::vector<TimeIntervals::Bin> TimeIntervals::histogram() const
{
    std::vector<Bin> result;
    for (const Range& range : ranges()) {
        result.push_back({inSeconds(range.from), inSeconds(range.to), range.count});
    }
    return result;
}

std::int64_t TimeIntervals::ranked(double percent) const
{
    return lengths_.empty() ? 0 : lengths_[rank(percent, lengths_.size())];
}

std::int64_t TimeIntervals::rankedJitter(double percent) const
{
    if (lengths_.empty()) {
        return 0;
    }
    const std::int64_t median = ranked(50.0);
    std::vector<std::int64_t> distances(lengths_.size());
    std::transform(lengths_.begin(), lengths_.end(), distances.begin(), [=](std::int64_t each) { return std::abs(each - median); });
    const auto result = distances.begin() + static_cast<std::ptrdiff_t>(rank(percent, distances.size()));
    std::nth_element(distances.begin(), result, distances.end());
    return *result;
}

std::int64_t TimeIntervals::roundedMean() const
{
    return std::llround(mean() / secondsPerNanosecond);
}

std::vector<TimeIntervals::Range> TimeIntervals::ranges() const
{
    std::vector<Range> result;
    if (lengths_.empty()) {
        return result;
    }
    const std::int64_t median = ranked(50.0);
    const std::vector<std::int64_t> distances = bounds(lengths_.front() - median, lengths_.back() - median);
    auto begin = lengths_.begin();
    for (std::size_t i = 1; i < distances.size(); ++i) {
        const std::int64_t to = median + distances[i];
        const auto end = std::lower_bound(begin, lengths_.end(), to);
        const std::int64_t from = std::max<std::int64_t>(median + distances[i - 1], 0);
        result.push_back({from, to, static_cast<std::size_t>(end - begin)});
        begin = end;
    }
    return result;
}

std::string TimeIntervals::toText() const
{
    std::string result;
    const auto line = [&result](const std::string& name, const std::string& value, const std::string& other = {}) {
        result += leftAligned(name, 12) + rightAligned(value, 14) + (other.empty() ? "" : rightAligned(other, 14)) + '\n';
    };
    line("intervals", std::to_string(count()));
    if (replacedStamps_ > 0) {
        line("not kept", std::to_string(replacedStamps_));
    }
    if (lengths_.empty()) {
        return result;
    }
    line("", "length, us", "jitter, us");
    line("minimum", inMicroseconds(ranked(0.0)));
    line("mean", inMicroseconds(roundedMean()));
    for (const auto& each : percentiles) {
        line(std::string("p") + each.text, inMicroseconds(ranked(each.percent)), inMicroseconds(rankedJitter(each.percent)));
    }
    line("maximum", inMicroseconds(ranked(100.0)), inMicroseconds(rankedJitter(100.0)));
    line("from, us", "to, us", "intervals");
    for (const Range& range : ranges()) {
        line(rightAligned(inMicroseconds(range.from), 12), inMicroseconds(range.to), std::to_string(range.count));
    }
    return result;
}

void TimeIntervals::writeCsv(std::ostream& stream) const
{
    std::string text = "quantity,parameter,value\n";
    const auto line = [&text](const char* quantity, const std::string& parameter, const std::string& value) {
        text.append(quantity).append(1, ',').append(parameter).append(1, ',').append(value).append(1, '\n');
    };
    line("intervals", "", std::to_string(count()));
    line("stamps_replaced", "", std::to_string(replacedStamps_));
    line("minimum_ns", "", std::to_string(ranked(0.0)));
    line("mean_ns", "", std::to_string(roundedMean()));
    line("maximum_ns", "", std::to_string(ranked(100.0)));
    for (const auto& each : percentiles) {
        line("percentile_ns", each.text, std::to_string(ranked(each.percent)));
    }
    for (const auto& each : percentiles) {
        line("jitter_ns", each.text, std::to_string(rankedJitter(each.percent)));
    }
    line("jitter_ns", "100", std::to_string(rankedJitter(100.0)));
    for (const Range& range : ranges()) {
        line("histogram_ns", std::to_string(range.from), std::to_string(range.count));
    }
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

} // namespace Utilities
