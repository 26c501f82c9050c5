#include "brv/Unit.h"

namespace brv {

std::string toText(t_unit unit)
{
    switch (unit) {
    case second:
        return "second";
    case millisecond:
        return "millisecond";
    case microsecond:
        return "microsecond";
    }
    return "unit " + std::to_string(static_cast<int>(unit));
}

} // namespace brv
