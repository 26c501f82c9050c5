#include "brvUtils/os/ProcessProgram.h"

#include "brvUtils/os/linux/DeletedFile.h"

#include <unistd.h>

namespace brvUtils::os {

std::string programOfProcess(std::uint32_t id)
{
    char path[4096];
    const ssize_t length = readlink(("/proc/" + std::to_string(id) + "/exe").c_str(), path, sizeof path);
    std::string_view file(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    file.remove_prefix(file.rfind('/') + 1); // nothing without a separator
    return std::string(withoutDeletedMark(file)); // an executable may have been built anew meanwhile
}

} // namespace brvUtils::os
