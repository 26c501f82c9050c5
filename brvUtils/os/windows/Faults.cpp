#include "brvUtils/os/Faults.h"

#include <cstdlib>

#include <windows.h>

namespace brvUtils::os {

void endWithoutTraces()
{
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    _set_error_mode(_OUT_TO_STDERR);
#ifdef _MSC_VER // The run-time library of MinGW has no reports to switch off.
    _set_abort_behavior(0, _CALL_REPORTFAULT);
#endif
}

void pinFaultReports() {}

} // namespace brvUtils::os
