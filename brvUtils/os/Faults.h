#pragma once

namespace brvUtils::os {

/// From now on this process leaves no core file and shows no dialog when it aborts or fails. For programs that end so on
/// purpose.
void endWithoutTraces();

} // namespace brvUtils::os
