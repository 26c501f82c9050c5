#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>

namespace softwareCard {

constexpr unsigned placeCount = 256;

/// A word in the ring's memory by which one thread tells that it sleeps.
using SleepWord = std::atomic<std::uint32_t>;

/// The doorbells of a ring, one at each place.
class Doorbells
{
public:
    /// \param ring the number of the ring, other than that of any other.
    explicit Doorbells(std::uint64_t ring);
    ~Doorbells();
    Doorbells(const Doorbells&) = delete;
    Doorbells& operator=(const Doorbells&) = delete;

    /// Sleeps until the bell of a place is rung, at most that long; returns at once, or earlier than that, now and then. The
    /// word, which is the sleeper's own, was 1 before the sleeper last looked for work.
    void sleep(unsigned place, SleepWord& word, std::chrono::milliseconds atMost);

    /// Wakes who sleeps there. Cheap when nobody does.
    void ring(unsigned place, SleepWord& word)
    {
        if (word.load() != 0 && word.exchange(0) != 0) {
            wake(place, word);
        }
    }

private:
    void wake(unsigned place, SleepWord& word);
    void* bell(unsigned place);

    [[maybe_unused]] std::uint64_t ring_;
    std::array<std::atomic<void*>, placeCount> bells_{}; ///< What the system gave for each that was used, if anything.
};

} // namespace softwareCard
