#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brvTesting {

/// One of several ways to do the same work.
struct Contender
{
    std::string name;
    std::function<double(std::uint64_t)> run; ///< Does that many iterations and gives the time they took, in nanoseconds.
};

struct InterleavedSettings
{
    int rounds = 11; ///< How often each contender runs.
    std::chrono::nanoseconds perRun = std::chrono::milliseconds(20); ///< About how long each run takes.
};

/// Runs the contenders in turns, A B C A B C, so that whatever else the computer does meets all of them alike. Gives the
/// median of each one's nanoseconds per iteration, in their order. How many iterations make a run is found out before, for
/// each contender on its own.
std::vector<double> medianPerIteration(const std::vector<Contender>& contenders, const InterleavedSettings& settings = {});

/// The nanoseconds that a call takes, on the steady clock: for Contender::run.
template <typename Work>
double nanosecondsOf(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

} // namespace brvTesting
