#include "brvUtils/os/User.h"

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace brvUtils::os {

std::string effectiveUserName()
{
    const uid_t user = geteuid();
    std::vector<char> buffer(1024);
    passwd entry {};
    passwd* found = nullptr;
    while (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
        buffer.resize(2 * buffer.size());
    }
    return found != nullptr ? found->pw_name : std::to_string(user);
}

} // namespace brvUtils::os
