#pragma once

#include <string>

#include <brv/export.h>

namespace brv {

/// Units of measurement. The numbers are those that the suite writes and reads; there are others than those named here.
enum t_unit : int {
    second = 44,
    millisecond = 45,
    microsecond = 46
};

/// The unit's name for people: "second", "millisecond", "microsecond", and of any other its number, as in "unit 47". Any
/// thread may call.
BRV_API std::string toText(t_unit unit);

} // namespace brv
