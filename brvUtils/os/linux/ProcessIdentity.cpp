#include "brvUtils/os/linux/ProcessIdentity.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace brvUtils::os {

namespace {

std::uint64_t startTimeOfThisProcess()
{
    char text[1024] = {};
    std::FILE* file = std::fopen("/proc/self/stat", "re");
    if (file == nullptr) {
        return 0;
    }
    const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[length] = '\0';
    // The second field is the program's name and may hold blanks; the start time is the 22nd.
    const char* field = std::strrchr(text, ')');
    for (int number = 2; field != nullptr && number < 22; ++number) {
        field = std::strchr(field + 1, ' ');
    }
    return field != nullptr ? std::strtoull(field, nullptr, 10) : 0;
}

} // namespace

ProcessIdentity identityOfThisProcess()
{
    ProcessIdentity identity{};
    identity.processId = static_cast<std::uint32_t>(getpid());
    identity.startTime = startTimeOfThisProcess();
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const std::string_view file(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    const std::string_view program = file.substr(file.rfind('/') + 1); // all of it without a separator
    program.copy(identity.program, sizeof identity.program - 1);
    return identity;
}

} // namespace brvUtils::os
