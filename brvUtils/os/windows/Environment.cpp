#include "brvUtils/os/Environment.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/EnvironmentMutex.h"

#include <cstdlib>
#include <mutex>

namespace brvUtils::os {

// Through the C library: it keeps a copy of its own for `getenv` and hands changes on to the system.

std::optional<std::string> environmentVariable(const std::string& name)
{
    const std::shared_lock lock(environmentMutex());
    const wchar_t* value = _wgetenv(wideFromUtf8(name).c_str());
    return value != nullptr ? std::optional<std::string>(utf8FromWide(value)) : std::nullopt;
}

ErrorCode setEnvironmentVariable(const std::string& name, const std::string& value)
{
    if (name.empty() || name.find('=') != std::string::npos) {
        return error::invalidParameter;
    }
    const std::unique_lock lock(environmentMutex());
    return _wputenv(wideFromUtf8(name + "=" + value).c_str()) == 0 ? error::none : error::notEnoughMemory;
}

ErrorCode removeEnvironmentVariable(const std::string& name)
{
    // The C library reports an error for what is not set.
    return environmentVariable(name) ? setEnvironmentVariable(name, "") : error::none;
}

} // namespace brvUtils::os
