#include "brvUtils/os/ProgramOutput.h"

#include "brvUtils/os/linux/Errno.h"

#include <cerrno>
#include <cstdio>
#include <new>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brvUtils::os {

struct OwnOutput
{
    int descriptor = -1;
};

OwnOutput* takeStandardOutput(bool othersToErrorStream, ErrorCode& error) noexcept
{
    std::fflush(stdout);
    const int own = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    const int others = othersToErrorStream ? fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3) : open("/dev/null", O_WRONLY | O_CLOEXEC);
    OwnOutput* const output = new (std::nothrow) OwnOutput{own};
    error = error::none;
    if (own < 0 || others < 0 || output == nullptr || dup2(others, STDOUT_FILENO) < 0) {
        error = output == nullptr ? error::notEnoughMemory : fromErrno(errno);
        delete output;
    }
    if (others >= 0) {
        close(others);
    }
    if (error != error::none && own >= 0) {
        close(own);
    }
    return error == error::none ? output : nullptr;
}

void giveStandardOutputBack(OwnOutput* output) noexcept
{
    if (output != nullptr) {
        std::fflush(stdout);
        dup2(output->descriptor, STDOUT_FILENO);
        close(output->descriptor);
        delete output;
    }
}

ErrorCode writeOwnOutput(OwnOutput* output, std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t written = write(output->descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return fromErrno(errno);
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return error::none;
}

int ownOutputWidth(const OwnOutput* output) noexcept
{
    if (isatty(output->descriptor) == 0) {
        return 0;
    }
    winsize size{};
    const bool known = ioctl(output->descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

} // namespace brvUtils::os
