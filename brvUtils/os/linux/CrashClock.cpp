#include "brvUtils/os/CrashReport.h"

namespace brvUtils::os {
namespace {

constexpr std::time_t day = 24 * 60 * 60;

/// The time zone, asked for while locks may be taken: what is added to the time of the world until the next change, and then.
struct Zone
{
    Zone() noexcept
        : now(offsetAt(std::time(nullptr)))
        , later(now)
    {
        const std::time_t start = std::time(nullptr);
        std::time_t before = start;
        while (offsetAt(before + day) == now && before < start + 366 * day) {
            before += day;
        }
        std::time_t behind = before + day;
        later = offsetAt(behind);
        while (behind - before > 1) {
            const std::time_t middle = before + (behind - before) / 2;
            (offsetAt(middle) == now ? before : behind) = middle;
        }
        change = behind;
    }

    static long offsetAt(std::time_t time)
    {
        std::tm local{};
        return localtime_r(&time, &local) != nullptr ? local.tm_gmtoff : 0;
    }

    long now;
    long later;
    std::time_t change = 0;
};

const Zone& zone()
{
    static const Zone found;
    return found;
}

} // namespace

void prepareCrashClock() noexcept
{
    zone();
}

std::tm crashTime() noexcept
{
    std::time_t time = std::time(nullptr);
    time += time < zone().change ? zone().now : zone().later;
    // gmtime_r would take the lock of the time zone. Days are counted in eras of 400 years from 1 March.
    const std::time_t days = time / day + 719'468;
    const std::time_t era = days / 146'097;
    const std::time_t inEra = days % 146'097;
    const std::time_t year = (inEra - inEra / 1460 + inEra / 36'524 - inEra / 146'096) / 365;
    const std::time_t inYear = inEra - (365 * year + year / 4 - year / 100);
    const std::time_t month = (5 * inYear + 2) / 153; // from March
    std::tm parts{};
    parts.tm_mday = static_cast<int>(inYear - (153 * month + 2) / 5 + 1);
    parts.tm_mon = static_cast<int>(month < 10 ? month + 2 : month - 10);
    parts.tm_year = static_cast<int>(year + era * 400 + (month < 10 ? 0 : 1) - 1900);
    parts.tm_hour = static_cast<int>(time / 3600 % 24);
    parts.tm_min = static_cast<int>(time / 60 % 60);
    parts.tm_sec = static_cast<int>(time % 60);
    return parts;
}

} // namespace brvUtils::os
