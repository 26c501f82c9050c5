#include "brvUtils/os/Calendar.h"

#include <cerrno>

namespace brvUtils::os {

bool utcCalendar(std::int64_t seconds, std::tm& fields)
{
    if (seconds < 0 || seconds > endOfCalendar) {
        errno = EINVAL;
        return false;
    }
    const std::time_t time = seconds;
    return gmtime_r(&time, &fields) != nullptr;
}

} // namespace brvUtils::os
