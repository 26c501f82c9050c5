#pragma once

#include <string>
#include <vector>

namespace softwareCard {

/// Where a ring is. UTF-8.
struct RingPlace
{
    std::string folder; ///< Empty: the user's own one.
    std::string ring; ///< Its name.
};

/// The name of a ring when none is given.
constexpr const char* defaultRing = "default";

/// Letters (A to Z), digits, dots, underscores and hyphens, 1 to 64 of them.
bool isRingName(const std::string& name);

/// The folder of a place with none: the user's own one.
std::string defaultFolder();

/// A variable of this process, UTF-8; empty when it is not set. RFM2G_RING and RFM2G_FOLDER are those of the card.
std::string variable(const char* name);

/// The path of the file of a ring.
std::string ringPath(const RingPlace& place);

/// The names of the rings in a folder (the user's own one when empty), sorted. None when there is no such folder.
std::vector<std::string> ringNames(const std::string& folder);

} // namespace softwareCard
