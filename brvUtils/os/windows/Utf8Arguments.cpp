#include "brvUtils/os/Utf8Arguments.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

#include <shellapi.h>

namespace brvUtils::os {

std::vector<std::string> utf8Arguments(int argc, char** argv)
{
    int count = 0;
    wchar_t** const list = CommandLineToArgvW(GetCommandLineW(), &count);
    if (list == nullptr) {
        return std::vector<std::string>(argv, argv + argc);
    }
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        arguments.push_back(utf8FromWide(list[i]));
    }
    LocalFree(list);
    return arguments;
}

} // namespace brvUtils::os
