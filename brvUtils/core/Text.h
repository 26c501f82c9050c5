#pragma once

#include <cstdint>
#include <string>

#include "brvUtils/export.h"

/// \file
/// Case, comparison, numbers to text, and bits. Any thread may call these; letters are those of the C library's locale.

namespace brvUtils {

/// A copy in which every byte went through the C library's `toupper`.
BRVUTILS_API std::string toupper(const std::string& text);
/// The same with `tolower`.
BRVUTILS_API std::string tolower(const std::string& text);

/// True when both texts are the same in upper case. Tells equality only, no order.
BRVUTILS_API bool strCompareCI(const std::string& a, const std::string& b);

/// `value` with that many digits (0 or more) after the point. The text is cut at 39 characters.
BRVUTILS_API std::string float_to_string(float value, int decimals);

/// A size in bytes for people: "1024 B", "1 KB" (whole, cut), "1.00 MB", "1.00 GB" or "1.00 TB". A unit starts just
/// above its power of 1024, so that 1024² bytes are "1024 KB".
BRVUTILS_API std::string byteSizeToString(std::uint64_t size);

/// Bit `index` mod 32 of `value`, the lowest being 0.
BRVUTILS_API bool getBit(unsigned int value, unsigned int index);

/// Sets or clears bit `index` mod 32 of `value`.
BRVUTILS_API void setBit(unsigned int& value, unsigned int index, bool on);

} // namespace brvUtils
