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
    int result;
    while ((result = getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found)) == ERANGE || result == EINTR) {
        if (result == ERANGE) {
            buffer.resize(2 * buffer.size());
        }
    }
    if (found != nullptr) {
        return found->pw_name;
    }
    // Other codes are ways to say that there is no such user.
    const bool noAnswer = result == EIO || result == EMFILE || result == ENFILE || result == ENOMEM;
    return noAnswer ? std::string() : std::to_string(user);
}

} // namespace brvUtils::os
