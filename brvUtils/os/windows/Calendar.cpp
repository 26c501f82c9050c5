#include "brvUtils/os/Calendar.h"

#include <cerrno>

namespace brvUtils::os {

bool utcCalendar(std::int64_t seconds, std::tm& fields)
{
    if (seconds < 0 || seconds > endOfCalendar) {
        errno = EINVAL;
        return false;
    }
    const __time64_t time = seconds;
    return _gmtime64_s(&fields, &time) == 0;
}

} // namespace brvUtils::os
