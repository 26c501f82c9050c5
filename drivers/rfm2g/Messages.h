#pragma once

#include "brvUtils/ipc/Rfm2g.h"

namespace softwareCard {

/// A short text, without a full stop; null for what is no status of the card.
const char* messageOf(brvUtils::rfm2g::Status status);

} // namespace softwareCard
