#pragma once

namespace brvUtils::os {

/// From now on this process leaves no core file and shows no dialog when it aborts or fails. For programs that end so on
/// purpose.
void endWithoutTraces();

/// Where the program is built with a sanitizer: its reports go to what is the standard error stream now, also when that
/// stream is sent elsewhere later.
void pinFaultReports();

} // namespace brvUtils::os
