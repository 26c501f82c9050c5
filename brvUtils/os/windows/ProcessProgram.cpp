#include "brvUtils/os/ProcessProgram.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <string_view>

namespace brvUtils::os {

std::string programOfProcess(std::uint32_t id)
{
    const ScopedHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    wchar_t path[4096];
    DWORD length = 4096;
    if (!process.open() || !QueryFullProcessImageNameW(process.get(), 0, path, &length)) {
        return {};
    }
    const std::wstring_view file(path, length);
    return utf8FromWide(std::wstring(file.substr(file.find_last_of(L"/\\") + 1)));
}

} // namespace brvUtils::os
