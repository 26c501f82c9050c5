#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/Encoding.h"

#include <algorithm>
#include <windows.h>

namespace brvUtils::os {
namespace {

std::wstring nativePath(const std::string& file)
{
    std::wstring path = wideFromUtf8(file);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

} // namespace

std::uint32_t versionInfoSize(const std::string& file)
{
    DWORD unused = 0;
    return GetFileVersionInfoSizeW(nativePath(file).c_str(), &unused);
}

bool readVersionInfo(const std::string& file, std::uint32_t size, std::string& data)
{
    data.assign(size, '\0');
    return GetFileVersionInfoW(nativePath(file).c_str(), 0, size, data.data()) != 0;
}

} // namespace brvUtils::os
