#include "brvUtils/os/CommandLine.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

#include <shellapi.h>

namespace brvUtils::os {

ErrorCode commandLine(std::vector<std::string>& arguments)
{
    int count = 0;
    wchar_t** const list = CommandLineToArgvW(GetCommandLineW(), &count);
    if (list == nullptr) {
        return GetLastError();
    }
    arguments.clear();
    for (int i = 0; i < count; ++i) {
        arguments.push_back(localFromWide(list[i]));
    }
    LocalFree(list);
    return error::none;
}

} // namespace brvUtils::os
