#pragma once

#include "rfm2g/Doorbells.h"
#include "rfm2g/EventLog.h"
#include "rfm2g/Ring.h"

#include <cstddef>

namespace softwareCard {

/// Space is had from the system in blocks of that many bytes.
constexpr Offset blockSize = 64 * 1024;
constexpr Offset largestMemory = 256u << 20;

/// What a ring's file starts with.
struct RingStart
{
    std::atomic<std::uint64_t> magic; ///< Set last: whoever makes the ring may be killed before.
    std::uint32_t version;
    Offset size; ///< Of the memory.
    std::uint64_t number; ///< By chance; no other ring has it.
};

/// One bit for each of `count` things.
template <std::size_t count>
struct SharedBits
{
    std::array<std::atomic<std::uint64_t>, count / 64> words;

    bool test(std::size_t bit) const { return (words[bit / 64].load() >> (bit % 64) & 1) != 0; }
    void set(std::size_t bit, bool on = true)
    {
        const std::uint64_t mask = std::uint64_t{1} << (bit % 64);
        on ? words[bit / 64].fetch_or(mask) : words[bit / 64].fetch_and(~mask);
    }
};

/// One handle. It counts only as long as its place in the file is taken.
struct alignas(64) RingPlaceEntry
{
    std::atomic<std::uint32_t> process;
    std::atomic<std::uint32_t> node;
    std::atomic<std::uint32_t> events; ///< Those enabled, as bits.
    SleepWord sleeps; ///< Not 0 while its thread waits for events.
};

/// A ring's file, up to the memory. All zero but for the start when it is new.
struct RingLayout
{
    RingStart start;
    std::atomic<std::uint32_t> ringOpen;
    std::atomic<std::uint32_t> openRefused;
    std::atomic<std::uint32_t> lostWrites;
    std::atomic<std::uint32_t> writes; ///< Counted while some are to be lost.
    std::atomic<std::uint32_t> placesUsed; ///< No entry from there on was ever taken. Grows under the file's lock.
    SharedBits<nodeCount> silent;
    SharedBits<largestMemory / blockSize> reserved; ///< The blocks of the memory; the others are zero and take no space.
    std::array<RingPlaceEntry, placeCount> entries;
    EventLog log;
};

/// Where the memory starts in the file.
constexpr std::uint64_t memoryStart = (sizeof(RingLayout) + blockSize - 1) / blockSize * blockSize;

} // namespace softwareCard
