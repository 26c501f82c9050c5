#pragma once

#include <cstddef>
#include <cstdint>

namespace brvUtils {

/// The sum of all bytes, each taken as a signed number of 8 bits; it wraps at 32 bits.
/// \param data at any address; may be null when length is 0.
std::int32_t additiveChecksum(const char* data, std::size_t length);

} // namespace brvUtils
