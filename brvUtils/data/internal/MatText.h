#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brvUtils {

/// One UTF-8 text per character, `most` of them at most. Bytes that are no UTF-8 become a text each, as they are.
std::vector<std::string> charactersOf(const char* text, std::size_t bytes, std::size_t most);

/// The same of UTF-16: a pair of surrogates is one character, a lone one becomes U+FFFD.
std::vector<std::string> charactersOf(const std::uint16_t* text, std::size_t units, std::size_t most);

} // namespace brvUtils
