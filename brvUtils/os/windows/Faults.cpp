#include "brvUtils/os/Faults.h"

#include <cstdlib>

#include <windows.h>

namespace brvUtils::os {

void endWithoutTraces()
{
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    _set_abort_behavior(0, _WRITE_ABORT_MSG | _CALL_REPORTFAULT);
}

} // namespace brvUtils::os
