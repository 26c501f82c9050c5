#pragma once

#include <istream>
#include <optional>
#include <string>

namespace brvUtils::os {

/// A place on a network mount.
struct MountedPlace
{
    std::string server;
    std::string mountPoint;
    std::string folder; ///< What the server calls the folder that is mounted there.
    std::string rest; ///< The path below both, with its leading separator.
};

/// Looks an absolute path with the system's separators up in a mount table, in the form of /proc/self/mountinfo. Nothing
/// when it lies on no NFS mount. Links in the path are not followed.
std::optional<MountedPlace> mountedPlace(std::istream& table, const std::string& path);

} // namespace brvUtils::os
