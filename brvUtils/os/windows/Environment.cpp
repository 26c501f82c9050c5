#include "brvUtils/os/Environment.h"

#include "brvUtils/os/Encoding.h"

#include <cstdlib>

#include <windows.h>

namespace brvUtils::os {

// Read from the system: the C library's wide copy is converted from text in the code page at the start of the program.
// Changed through the C library, which hands changes on to the system and keeps its own copy for `getenv`.

std::optional<std::string> environmentVariable(const std::string& name)
{
    const std::wstring wide = wideFromUtf8(name);
    std::wstring value(128, L'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length < value.size()) {
            value.resize(length);
            return length != 0 || GetLastError() == ERROR_SUCCESS ? std::optional<std::string>(utf8FromWide(value)) : std::nullopt;
        }
        value.resize(length); // another thread may make it longer meanwhile
    }
}

ErrorCode setEnvironmentVariable(const std::string& name, const std::string& value)
{
    if (name.empty() || name.find('=') != std::string::npos) {
        return error::invalidParameter;
    }
    return _wputenv(wideFromUtf8(name + "=" + value).c_str()) == 0 ? error::none : error::notEnoughMemory;
}

ErrorCode removeEnvironmentVariable(const std::string& name)
{
    // The C library reports an error for what is not set.
    return environmentVariable(name) ? setEnvironmentVariable(name, "") : error::none;
}

} // namespace brvUtils::os
