#pragma once

#include <iostream>
#include <string>

/// \file
/// What segments on reflective memory tell. Lines in one piece: other threads and processes may write at the same time.

namespace brvUtils {

/// Of progress.
inline void sayOfCard(const std::string& text)
{
    std::cout << "[SHM VMIC] " + text + "\n" << std::flush;
}

/// Of a failure. \return false.
inline bool complainOfCard(const std::string& text)
{
    std::cerr << "[SHM VMIC] " + text + "\n" << std::flush;
    return false;
}

} // namespace brvUtils
