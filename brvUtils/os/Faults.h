#pragma once

namespace brvUtils::os {

/// From now on this process ends without dialog, core file or message of the run-time library when it aborts or fails.
/// For programs that end so on purpose.
void endWithoutTraces();

} // namespace brvUtils::os
