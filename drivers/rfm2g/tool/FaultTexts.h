#pragma once

#include "rfm2g/Ring.h"

#include <string>
#include <vector>

/// \file
/// The faults of a ring as texts: "ring-open", "open-refused", "lost-writes", "silent".

namespace rfm2gCard {

using softwareCard::Faults;

extern const std::vector<std::string> faultNames;

/// How one of them stands, such as "ring-open off" or "silent 1, 3".
std::string faultState(const Faults& faults, const std::string& name);

/// Those that are on.
std::vector<std::string> faultsThatAreOn(const Faults& faults);

/// The faults with one changed.
/// \param values "on", "off", or a number; behind the number of a silent node "on" or "off".
/// \throw Fault when that makes no sense.
Faults withFault(Faults faults, const std::string& name, const std::vector<std::string>& values);

} // namespace rfm2gCard
