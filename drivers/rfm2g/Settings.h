#pragma once

#include "rfm2g/Ring.h"

namespace softwareCard {

/// Which node of which ring a device is.
struct Settings
{
    RingPlace place;
    Node node;
    Offset size; ///< Of a ring that is made.
};

/// What the variables of this process say of a device. Nothing when there is no such device, or when a variable is malformed,
/// which then is the problem.
std::optional<Settings> settingsOf(const std::string& device, std::string& problem);

} // namespace softwareCard
