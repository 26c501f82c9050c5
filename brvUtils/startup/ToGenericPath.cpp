#include "brvUtils/startup/EnvConfig.h"

#include "brvUtils/core/FileSystem.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/Environment.h"

#include <brv/Path.h>

#include <optional>

// From a path of this computer to one that means the same on all of them.

namespace brvUtils {

namespace {

/// For comparisons; as long as the path itself.
std::string uniform(const std::string& path)
{
    return toupper(brv::FixPathSeparators(path));
}

/// What follows the root in the path, as it is written there.
std::optional<std::string> behindRoot(const std::string& path, const std::string& root)
{
    const std::size_t position = uniform(path).find(uniform(root));
    return position != std::string::npos ? std::optional<std::string>(path.substr(position + root.size())) : std::nullopt;
}

/// \return empty or the path itself where it does not lie in the root.
std::string replaceRoot(const std::string& root, const std::string& reference, const std::string& path, bool strict)
{
    if (const auto rest = behindRoot(path, root)) {
        return reference + *rest;
    }
    const std::string localPath = checkForLocalPath(path);
    if (const auto rest = behindRoot(localPath, root)) {
        return reference + *rest;
    }
    const std::string localRoot = checkForLocalPath(root);
    if (!localRoot.empty()) {
        if (const auto rest = behindRoot(localPath, localRoot)) {
            return reference + *rest;
        }
    }
    return strict ? std::string() : path;
}

} // namespace

std::string EnvConfig::transformInGenericPath(const std::string& path, bool strict)
{
    std::string result = strict ? std::string() : path;
    for (const char* variable : {"COMPUTE_PATH", "LOCAL_STUDIO_PATH", "STUDIO_PATH"}) {
        if (const auto root = os::environmentVariable(variable)) {
            result = replaceRoot(*root, "${" + std::string(variable) + "}", path, strict);
            if (!result.empty() && result != path) {
                break;
            }
        }
    }
    return result;
}

} // namespace brvUtils
