#include "brvUtils/ipc/internal/Checksum.h"

#include <algorithm>
#include <cstring>

namespace brvUtils {

// A compiler makes a few vector instructions of the loops over a block, which sums bytes of the same place in 16 bits.
// Before these could overflow they are added up in 32.
std::int32_t additiveChecksum(const char* data, std::size_t length)
{
    constexpr std::size_t block = 16;
    constexpr std::size_t blocksThatFit = 256; // -128 * 256 is the least number of 16 bits

    std::uint32_t total = 0;
    while (length >= block) {
        std::int16_t sums[block] = {};
        for (std::size_t blocks = std::min(length / block, blocksThatFit); blocks > 0; --blocks) {
            std::int8_t bytes[block];
            std::memcpy(bytes, data, block);
            for (std::size_t i = 0; i < block; ++i) {
                sums[i] = static_cast<std::int16_t>(sums[i] + bytes[i]);
            }
            data += block;
            length -= block;
        }
        for (const std::int16_t sum : sums) {
            total += static_cast<std::uint32_t>(sum);
        }
    }
    for (; length > 0; --length) {
        total += static_cast<std::uint32_t>(static_cast<std::int8_t>(*data++));
    }
    return static_cast<std::int32_t>(total);
}

} // namespace brvUtils
