#pragma once

#include "brvUtils/export.h"

/// \file
/// Start and stop of the sockets layer by use count, so that nobody needs to know whether somebody else started it. The
/// count belongs to the process. Any thread may call these.

namespace brvUtils {

/// Starts the sockets layer, version 2.2, on its first use. True when the layer is available; the use then counts until
/// `releaseNetworkSystem`. On failure writes a line to the standard output, counts nothing and returns false.
BRVUTILS_API bool initNetworkSystem();

/// Ends one use and stops the layer after the last one. No effect when nothing was started.
BRVUTILS_API void releaseNetworkSystem();

} // namespace brvUtils
