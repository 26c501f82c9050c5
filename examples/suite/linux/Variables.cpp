#include "../Variables.h"

#include <cstdlib>

namespace suite {

void setVariable(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1);
}

std::optional<std::string> getVariable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

const std::vector<std::string> temporaryVariables = {"TEMP", "TMPDIR"};
const char* const temporaryFolder = "/tmp";

} // namespace suite
