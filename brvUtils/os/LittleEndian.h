#pragma once

#include <cstddef>
#include <cstdint>

namespace brvUtils::os {

/// The number in bytes of a file, low byte first, at any address.
template<class Number>
Number littleEndian(const char* bytes)
{
    std::uint64_t number = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        number = (number << 8) | static_cast<unsigned char>(bytes[i]);
    }
    return static_cast<Number>(number);
}

} // namespace brvUtils::os
