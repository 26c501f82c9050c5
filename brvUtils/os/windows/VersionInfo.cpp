#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/PeResource.h"

#include <algorithm>
#include <windows.h>

namespace brvUtils::os {
namespace {

/// The file that the system finds by this name, with its folder; empty when there is none.
std::wstring fullPath(const std::string& file)
{
    std::wstring name = wideFromUtf8(file);
    std::replace(name.begin(), name.end(), L'/', L'\\');
    std::wstring path;
    DWORD size = MAX_PATH;
    do {
        path.resize(size);
        size = SearchPathW(nullptr, name.c_str(), nullptr, static_cast<DWORD>(path.size()), path.data(), nullptr);
    } while (size > path.size());
    path.resize(size);
    return path;
}

/// The version library follows the tree without a look at where the file ends; it is not asked about files that would lead it
/// there.
PeTree treeOf(const std::wstring& path)
{
    InputFile input;
    return input.open(utf8FromWide(path)) == error::none ? peVersionTree(input) : PeTree::none;
}

} // namespace

std::uint32_t versionInfoSize(const std::string& file)
{
    const std::wstring path = fullPath(file);
    DWORD unused = 0;
    return treeOf(path) != PeTree::none ? GetFileVersionInfoSizeW(path.c_str(), &unused) : 0;
}

bool readVersionInfo(const std::string& file, std::uint32_t size, std::string& data)
{
    const std::wstring path = fullPath(file);
    if (treeOf(path) != PeTree::withTheData) {
        return false;
    }
    data.assign(size, '\0'); // which is no more than the file suggests, now that it is known to hold the data
    return GetFileVersionInfoW(path.c_str(), 0, size, data.data()) != 0;
}

} // namespace brvUtils::os
