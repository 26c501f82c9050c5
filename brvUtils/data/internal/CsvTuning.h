#pragma once

#include "brvUtils/export.h"

#include <cstddef>

namespace brvUtils::csv {

/// How a file is cut and shared out; 0 leaves that to the loader. For tests and benchmarks; read when a load begins.
struct Tuning
{
    unsigned threads = 0;
    std::size_t blockSize = 0; ///< Bytes.
};
BRVUTILS_API Tuning& tuning();

} // namespace brvUtils::csv
