#include "brvUtils/os/NetworkDrive.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/FileSystem.h"
#include "brvUtils/os/Network.h"
#include "brvUtils/os/windows/Shares.h"

#include <windows.h>

#include <lm.h>
#include <winnetwk.h>

#include <algorithm>

namespace brvUtils::os {
namespace {

/// What a drive is connected to; empty when it is no network drive.
std::string connectionOf(const std::string& drive)
{
    const std::wstring name = wideFromUtf8(drive);
    std::wstring connection(MAX_PATH, L'\0');
    auto size = static_cast<DWORD>(connection.size());
    DWORD result = WNetGetConnectionW(name.c_str(), connection.data(), &size);
    if (result == ERROR_MORE_DATA) {
        connection.resize(size);
        result = WNetGetConnectionW(name.c_str(), connection.data(), &size);
    }
    return result == NO_ERROR ? utf8FromWide(connection.c_str()) : std::string();
}

std::string thisComputer()
{
    if (startSockets() != error::none) {
        return {};
    }
    const std::string name = hostName();
    stopSockets();
    return name;
}

/// All shares; none when the user may not list them.
std::vector<Share> shares()
{
    std::vector<Share> list;
    BYTE* buffer = nullptr;
    DWORD count = 0;
    DWORD total = 0;
    const NET_API_STATUS result = NetShareEnum(nullptr, 2, &buffer, MAX_PREFERRED_LENGTH, &count, &total, nullptr);
    if (buffer != nullptr) {
        const auto* entries = static_cast<const SHARE_INFO_2*>(static_cast<const void*>(buffer));
        for (DWORD i = 0; result == NERR_Success && i < count; ++i) {
            list.push_back({ utf8FromWide(entries[i].shi2_netname), utf8FromWide(entries[i].shi2_path) });
        }
        NetApiBufferFree(buffer);
    }
    return list;
}

} // namespace

std::string pathInShare(const std::string& connection, const std::string& host, const std::vector<Share>& shares, const std::string& rest)
{
    if (connection.compare(0, 2, "\\\\") != 0) {
        return {};
    }
    const std::size_t endOfServer = connection.find('\\', 2);
    if (endOfServer == std::string::npos || !sameFileName(connection.substr(2, endOfServer - 2), host)) {
        return {};
    }
    const std::size_t endOfShare = std::min(connection.find('\\', endOfServer + 1), connection.size());
    const std::string name = connection.substr(endOfServer + 1, endOfShare - endOfServer - 1);
    for (const Share& share : shares) {
        if (sameFileName(share.name, name)) {
            std::string path = share.folder;
            if (!path.empty() && path.back() == '\\') {
                path.pop_back(); // of a drive's root
            }
            path += connection.substr(endOfShare) + "\\";
            return path + rest.substr(std::min(rest.find_first_not_of("/\\"), rest.size()));
        }
    }
    return {};
}

std::string localPath(const std::string& path)
{
    if (path.size() < 2 || path[1] != ':') {
        return path;
    }
    const std::string connection = connectionOf(path.substr(0, 2));
    const std::string local = connection.empty() ? std::string() : pathInShare(connection, thisComputer(), shares(), path.substr(2));
    return local.empty() ? path : local;
}

} // namespace brvUtils::os
