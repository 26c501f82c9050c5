#pragma once

#include "brvUtils/os/linux/TableLayout.h"

namespace brvUtils::os {

/// What other processes know of this one: number, start time, program. Without a ticket.
ProcessIdentity identityOfThisProcess();

} // namespace brvUtils::os
