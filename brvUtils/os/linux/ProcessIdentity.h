#pragma once

#include "brvUtils/os/linux/TableLayout.h"

namespace brvUtils::os {

/// The record by which other processes know this one: number, start time, program.
ProcessRecord identityOfThisProcess(std::uint32_t ticket);

} // namespace brvUtils::os
