#pragma once

#include <string>

namespace suite {

/// Sets a variable of this process's environment, for the library and for children to come. UTF-8. While no other thread
/// runs.
void setVariable(const std::string& name, const std::string& value);

} // namespace suite
