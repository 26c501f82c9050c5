#pragma once

#include <cstddef>

/// The table by which processes share out network ports.
namespace brvUtils::ports {

constexpr char guardName[] = "SEM_VeloraConfigPortManagement";
constexpr char tableName[] = "SHM_VeloraConfigPortManagement";
constexpr unsigned short first = 25099;
constexpr std::size_t count = 202;

} // namespace brvUtils::ports
