#include "brvUtils/os/Environment.h"

#include "brvUtils/os/linux/EnvironmentMutex.h"
#include "brvUtils/os/linux/Errno.h"

#include <cstdlib>
#include <mutex>

namespace brvUtils::os {

std::optional<std::string> environmentVariable(const std::string& name)
{
    const std::shared_lock lock(environmentMutex());
    const char* value = std::getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

ErrorCode setEnvironmentVariable(const std::string& name, const std::string& value)
{
    const std::unique_lock lock(environmentMutex());
    return setenv(name.c_str(), value.c_str(), 1) == 0 ? error::none : fromErrno(errno);
}

ErrorCode removeEnvironmentVariable(const std::string& name)
{
    const std::unique_lock lock(environmentMutex());
    return unsetenv(name.c_str()) == 0 ? error::none : fromErrno(errno);
}

} // namespace brvUtils::os
