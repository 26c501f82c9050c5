#include "brvUtils/os/NetworkDrive.h"

#include "brvUtils/os/Network.h"
#include "brvUtils/os/linux/MountTable.h"
#include "brvUtils/os/linux/NativePath.h"

#include <fstream>
#include <sstream>
#include <strings.h>
#include <sys/stat.h>

namespace brvUtils::os {
namespace {

/// The text of a field of the table, in which blanks and backslashes are three octal digits after a backslash.
std::string unescaped(const std::string& field)
{
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && field.size() - i > 3) {
            text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
            i += 3;
        } else {
            text += field[i];
        }
    }
    return text;
}

/// Without a separator at its end: the root is empty.
std::string trimmed(std::string folder)
{
    if (!folder.empty() && folder.back() == '/') {
        folder.pop_back();
    }
    return folder;
}

bool liesBelow(const std::string& path, const std::string& folder)
{
    return path.compare(0, folder.size(), folder) == 0 && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool sameNode(const std::string& a, const std::string& b)
{
    struct stat first {};
    struct stat second {};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 && first.st_ino == second.st_ino;
}

} // namespace

std::optional<MountedPlace> mountedPlace(std::istream& table, const std::string& path)
{
    std::optional<MountedPlace> place;
    std::size_t longest = 0;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string skipped, root, mountPoint, type, source;
        fields >> skipped >> skipped >> skipped >> root >> mountPoint;
        while (fields >> skipped && skipped != "-") {
        }
        fields >> type >> source;
        mountPoint = trimmed(unescaped(mountPoint));
        // Of several mounts on one folder the last hides the others.
        if (!fields || !liesBelow(path, mountPoint) || mountPoint.size() < longest) {
            continue;
        }
        longest = mountPoint.size();
        place.reset();
        source = unescaped(source);
        const std::size_t colon = source.find(":/");
        if ((type == "nfs" || type == "nfs4") && colon != std::string::npos) {
            const std::string folder = trimmed(source.substr(colon + 1)) + trimmed(unescaped(root));
            place = MountedPlace { source.substr(0, colon), mountPoint, folder, path.substr(mountPoint.size()) };
        }
    }
    return place;
}

std::string localPath(const std::string& path)
{
    std::ifstream table("/proc/self/mountinfo");
    const auto place = mountedPlace(table, nativePath(path));
    if (!place || strcasecmp(place->server.c_str(), hostName().c_str()) != 0) {
        return path;
    }
    // What the server calls the folder need not be its path there. The numbers of nodes that it hands out tell.
    return sameNode(place->mountPoint + "/", place->folder + "/") ? place->folder + place->rest : path;
}

} // namespace brvUtils::os
