#pragma once

#include <algorithm>
#include <string>

namespace brvUtils::os {

/// The path as this system takes it: `\` separates folders as `/` does.
inline std::string nativePath(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

} // namespace brvUtils::os
