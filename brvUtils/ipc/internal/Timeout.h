#pragma once

#include "brvUtils/os/Wait.h"

namespace brvUtils {

/// The library's time-outs in the layer's terms: negative seconds wait without limit, others are cut to whole
/// milliseconds. Not a number polls; what milliseconds cannot hold waits as long as they can.
inline os::Milliseconds toMilliseconds(double seconds)
{
    if (seconds < 0) {
        return os::infinite;
    }
    const double milliseconds = seconds * 1000;
    if (!(milliseconds >= 1)) {
        return 0;
    }
    return milliseconds < os::infinite ? static_cast<os::Milliseconds>(milliseconds) : os::infinite - 1;
}

} // namespace brvUtils
