#pragma once

#include <algorithm>
#include <boost/core/bit.hpp>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define BRVUTILS_CSV_SSE2
#endif

namespace brvUtils::csv {

/// Where the fields of a piece of text end. To find that first takes little, and then the numbers of many fields are parsed
/// side by side by the processor: none has to wait until the end of the one before is known.
class FieldEnds
{
public:
    static constexpr std::size_t pieceSize = 8192;
    static constexpr std::size_t overread = 64; ///< Bytes behind the piece that are loaded without a look at them.

    /// Finds all separators and line feeds in `size` bytes, a piece at most. \return how many there are.
    std::size_t find(const char* piece, std::size_t size, char separator)
    {
        std::size_t count = 0;
        for (std::size_t place = 0; place < size; place += 64) {
            std::uint64_t found = mask(piece + place, separator);
            if (size - place < 64) {
                found &= (std::uint64_t(1) << (size - place)) - 1;
            }
            while (found != 0) {
                ends_[count++] = static_cast<std::uint16_t>(place + static_cast<std::size_t>(boost::core::countr_zero(found)));
                found &= found - 1;
            }
        }
        return count;
    }

    /// Drops some of them. \return how many are left.
    template <typename Condition>
    std::size_t removeIf(std::size_t count, Condition condition)
    {
        return static_cast<std::size_t>(std::remove_if(ends_, ends_ + count, condition) - ends_);
    }

    /// Counted from where the piece begins.
    std::size_t operator[](std::size_t i) const { return ends_[i]; }

private:
    /// A bit for each of 64 bytes.
    static std::uint64_t mask(const char* p, char separator)
    {
        std::uint64_t found = 0;
#ifdef BRVUTILS_CSV_SSE2
        const __m128i separators = _mm_set1_epi8(separator);
        const __m128i lineFeeds = _mm_set1_epi8('\n');
        for (int i = 0; i < 4; ++i) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i));
            const __m128i equal = _mm_or_si128(_mm_cmpeq_epi8(bytes, separators), _mm_cmpeq_epi8(bytes, lineFeeds));
            found |= static_cast<std::uint64_t>(_mm_movemask_epi8(equal)) << (16 * i);
        }
#else
        for (int i = 0; i < 64; ++i) {
            found |= static_cast<std::uint64_t>(p[i] == separator || p[i] == '\n') << i;
        }
#endif
        return found;
    }

    std::uint16_t ends_[pieceSize];
};

} // namespace brvUtils::csv
