#include "brvUtils/os/Error.h"

#include <windows.h>

namespace brvUtils::os {

std::string lastSystemErrorText()
{
    char* buffer = nullptr;
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, GetLastError(), 0, reinterpret_cast<char*>(&buffer), 0, nullptr);
    std::string text(buffer, length);
    LocalFree(buffer);
    return text;
}

} // namespace brvUtils::os
