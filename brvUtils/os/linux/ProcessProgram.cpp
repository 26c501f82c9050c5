#include "brvUtils/os/ProcessProgram.h"

#include <string_view>
#include <unistd.h>

namespace brvUtils::os {

std::string programOfProcess(std::uint32_t id)
{
    char path[4096];
    const ssize_t length = readlink(("/proc/" + std::to_string(id) + "/exe").c_str(), path, sizeof path);
    std::string_view file(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    file.remove_prefix(file.rfind('/') + 1); // nothing without a separator
    constexpr std::string_view removed = " (deleted)"; // an executable that was built anew meanwhile
    if (file.size() > removed.size() && file.substr(file.size() - removed.size()) == removed) {
        file.remove_suffix(removed.size());
    }
    return std::string(file);
}

} // namespace brvUtils::os
