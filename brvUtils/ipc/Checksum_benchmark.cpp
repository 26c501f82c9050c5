#include "brvUtils/ipc/Checksum_benchmark.h"

#include "brvUtils/ipc/internal/Checksum.h"
#include "testing/Interleaved.h"

#include <cstring>
#include <numeric>

namespace reflective {

using namespace brvTesting;

namespace {

std::int32_t scalarLoop(const char* data, std::size_t length)
{
    std::int32_t sum = 0;
    for (std::size_t i = 0; i < length; ++i) {
        sum += static_cast<signed char>(data[i]);
    }
    return sum;
}

std::int32_t accumulated(const char* data, std::size_t length)
{
    return std::accumulate(data, data + length, 0, [](std::int32_t sum, char byte) { return sum + static_cast<signed char>(byte); });
}

/// Looks at each byte for one that is not there, by the widest instructions that the computer has.
std::int32_t readAlone(const char* data, std::size_t length)
{
    return std::memchr(data, 'x', length) != nullptr ? 1 : 0;
}

Contender contender(const char* name, std::int32_t (*function)(const char*, std::size_t), const std::vector<char>& bytes)
{
    return {name, [function, &bytes](std::uint64_t iterations) {
                // Through a variable that may change at any time no call is left out.
                std::int32_t (*volatile call)(const char*, std::size_t) = function;
                return nanosecondsOf([&] {
                    for (std::uint64_t i = 0; i < iterations; ++i) {
                        call(bytes.data(), bytes.size());
                    }
                });
            }};
}

BenchmarkRow checksum(const std::string& row, std::size_t size)
{
    const std::vector<char> bytes(size, 'b');
    const std::vector<double> times = medianPerIteration({
        contender("ours", brvUtils::additiveChecksum, bytes),
        contender("scalar", scalarLoop, bytes),
        contender("accumulate", accumulated, bytes),
        contender("limit", readAlone, bytes),
    });
    return {row, "ns", times[0], {{"scalar loop", times[1]}, {"std::accumulate", times[2]}}, times[3]};
}

} // namespace

void addChecksumRows(BenchmarkTable& table)
{
    table.add(checksum("checksum, 64 B", 64));
    table.add(checksum("checksum, 1 KiB", 1024));
    table.add(checksum("checksum, 64 KiB", 65536));
    table.add(checksum("checksum, 64 MiB", 67108864));
}

} // namespace reflective
