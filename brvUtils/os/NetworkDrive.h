#pragma once

#include <string>

namespace brvUtils::os {

/// The same place by a path of this computer, when `path` lies on a network drive (Windows) or network mount (Linux, NFS)
/// whose server is this very computer; otherwise, and when the system does not tell, `path` as it is. May ask the network
/// and block. Any thread.
std::string localPath(const std::string& path);

} // namespace brvUtils::os
