#include "brvUtils/os/User.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

#include <lmcons.h>

namespace brvUtils::os {

std::string effectiveUserName()
{
    wchar_t name[UNLEN + 1];
    DWORD length = UNLEN + 1;
    return GetUserNameW(name, &length) ? utf8FromWide(name) : std::string();
}

} // namespace brvUtils::os
