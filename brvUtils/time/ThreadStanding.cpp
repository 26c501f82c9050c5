#include "brvUtils/time/ThreadStanding.h"

#include "brvUtils/os/ThreadStanding.h"

namespace brvUtils {

std::string standingOfCurrentThread()
{
    return os::standingOfThread();
}

std::string steadyClockName()
{
    return os::steadyClockName();
}

} // namespace brvUtils
