#pragma once

#include <optional>
#include <string>
#include <vector>

namespace suite {

/// Sets a variable of this process's environment, for the library and for children to come. UTF-8. While no other thread
/// runs.
void setVariable(const std::string& name, const std::string& value);

/// A variable of this process's environment, UTF-8; nothing when it is not defined.
std::optional<std::string> getVariable(const std::string& name);

/// The variables of which the first that is defined names the system's folder of temporary files.
extern const std::vector<std::string> temporaryVariables;

/// That folder when none of them is.
extern const char* const temporaryFolder;

} // namespace suite
