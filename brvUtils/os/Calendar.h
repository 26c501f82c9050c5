#pragma once

#include <cstdint>
#include <ctime>

namespace brvUtils::os {

/// Fills `fields` with the UTC calendar fields of a count of seconds since 1970. Any thread. False, with `errno` telling
/// why and `fields` as it was, for a time outside the years 1970 to 3000.
bool utcCalendar(std::int64_t seconds, std::tm& fields);

/// The last second of the year 3000, the end of the Windows C library's calendar.
constexpr std::int64_t endOfCalendar = 32535215999;

} // namespace brvUtils::os
