#pragma once

#include "brvUtils/os/linux/TableLayout.h"

namespace brvUtils::os {

/// The record by which other processes know this one: number, start time, program. Without a ticket.
ProcessRecord identityOfThisProcess();

} // namespace brvUtils::os
