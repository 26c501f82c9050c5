#pragma once

#include <cstdint>
#include <string>

namespace brvUtils::os {

/// File name of the executable of a process, without its folder, in UTF-8; empty when there is no such process or the system
/// does not tell this user.
std::string programOfProcess(std::uint32_t id);

} // namespace brvUtils::os
