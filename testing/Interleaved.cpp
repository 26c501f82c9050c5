#include "testing/Interleaved.h"

#include <algorithm>
#include <cmath>

namespace brvTesting {

namespace {

/// How many iterations take about that long.
std::uint64_t calibrated(const Contender& contender, double nanoseconds)
{
    // The first runs also warm it up. A run of a tenth tells enough about the whole.
    std::uint64_t iterations = 1;
    double taken;
    while ((taken = contender.run(iterations)) < nanoseconds / 10) {
        iterations *= 2;
    }
    return std::max<std::uint64_t>(1, std::llround(static_cast<double>(iterations) * nanoseconds / taken));
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

std::vector<double> medianPerIteration(const std::vector<Contender>& contenders, const InterleavedSettings& settings)
{
    std::vector<std::uint64_t> iterations;
    for (const Contender& contender : contenders) {
        iterations.push_back(calibrated(contender, static_cast<double>(settings.perRun.count())));
    }
    std::vector<std::vector<double>> results(contenders.size());
    for (int round = 0; round < settings.rounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            results[i].push_back(contenders[i].run(iterations[i]) / static_cast<double>(iterations[i]));
        }
    }
    std::vector<double> medians;
    for (std::vector<double>& result : results) {
        medians.push_back(medianOf(std::move(result)));
    }
    return medians;
}

} // namespace brvTesting
