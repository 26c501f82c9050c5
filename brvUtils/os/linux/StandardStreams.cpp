#include "brvUtils/os/StandardStreams.h"

#include "brvUtils/os/linux/Errno.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

// Not all streams at once: that would wait for a thread that reads the standard input.
void flushBoth()
{
    std::fflush(stdout);
    std::fflush(stderr);
}

} // namespace

struct StandardStreamCapture::System
{
    int stream;
    int saved = -1;
    int file = -1;
    ErrorCode error = error::none;
};

void useBinaryStandardStreams() {}

StandardStreamCapture::StandardStreamCapture(StandardStream stream) : system_(new System{static_cast<int>(stream)})
{
    flushBoth();
    system_->file = memfd_create("captured", MFD_CLOEXEC);
    system_->saved = fcntl(system_->stream, F_DUPFD_CLOEXEC, 3);
    if (system_->file < 0 || system_->saved < 0 || dup2(system_->file, system_->stream) < 0) {
        system_->error = fromErrno(errno);
    }
}

StandardStreamCapture::~StandardStreamCapture()
{
    flushBoth();
    if (system_->saved >= 0) {
        dup2(system_->saved, system_->stream);
        close(system_->saved);
    }
    if (system_->file >= 0) {
        close(system_->file);
    }
}

ErrorCode StandardStreamCapture::error() const
{
    return system_->error;
}

std::string StandardStreamCapture::text() const
{
    flushBoth();
    std::string text;
    char buffer[4096];
    ssize_t size;
    while ((size = pread(system_->file, buffer, sizeof buffer, static_cast<off_t>(text.size()))) > 0) {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
}

} // namespace brvUtils::os
