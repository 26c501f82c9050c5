#include "brvUtils/os/CrashReport.h"

#include "brvUtils/os/linux/BoundedCopy.h"
#include "brvUtils/os/linux/DeletedFile.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/stat.h>

extern char** environ; // NOLINT: the system's name

namespace brvUtils::os {
namespace {

constexpr int folderPatience = 3000; // ms
constexpr int outputPatience = 1000; // ms
constexpr std::size_t pipeChunk = 512; // what a pipe that can take anything takes at once

void assign(const char* from, std::size_t length, char* text, std::size_t size)
{
    const std::size_t kept = std::min(length, size - 1);
    std::memcpy(text, from, kept);
    text[kept] = '\0';
}

/// A folder below one where everybody may make files is for everybody, too, or the first user would keep out the others.
void makeFolder(const char* path, const char* parent)
{
    struct stat above{};
    if (mkdir(path, 0777) == 0 && stat(parent, &above) == 0 && (above.st_mode & S_ISVTX) != 0) {
        chmod(path, 01777);
    }
}

bool makeFolders(void* argument, CopyNotes&)
{
    char path[PATH_MAX];
    char parent[PATH_MAX] = ".";
    assign(static_cast<const char*>(argument), std::strlen(static_cast<const char*>(argument)), path, sizeof path);
    for (char* end = path; (end = std::strchr(end + 1, '/')) != nullptr; *end = '/') {
        *end = '\0';
        makeFolder(path, parent);
        std::strcpy(parent, path);
    }
    makeFolder(path, parent);
    return true;
}

bool exists(void* argument, CopyNotes&)
{
    struct stat there{};
    return stat(static_cast<const char*>(argument), &there) == 0;
}

} // namespace

const char crashPathSeparator = '/';
const char* const crashTemporaryFolder = "/tmp";
const char* const crashTemporaryVariables[] = {"TEMP", "TMPDIR", nullptr};

bool crashVariable(const char* name, char* text, std::size_t size) noexcept
{
    const std::size_t length = std::strlen(name);
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        if (std::strncmp(*variable, name, length) == 0 && (*variable)[length] == '=') {
            const char* value = *variable + length + 1;
            assign(value, std::strlen(value), text, size);
            return true;
        }
    }
    text[0] = '\0';
    return false;
}

bool crashModuleName(char* text, std::size_t size) noexcept
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) {
        text[0] = '\0';
        return false;
    }
    std::string_view name = withoutDeletedMark({ path, static_cast<std::size_t>(length) });
    name.remove_prefix(name.rfind('/') + 1); // nothing without a separator
    assign(name.data(), name.size(), text, size);
    return true;
}

// A file system that does not answer any more holds a copy of the process, not the process.
void makeCrashFolder(const char* path) noexcept
{
    runInCopy(makeFolders, const_cast<char*>(path), nullptr, folderPatience);
}

bool crashPathExists(const char* path) noexcept
{
    return runInCopy(exists, const_cast<char*>(path), nullptr, folderPatience);
}

void writeCrashLine(const char* text) noexcept
{
    // Nobody may read it: a closed pipe or a file at its limit would end the process with a signal, a full pipe would hold it.
    sigset_t ofOutput;
    sigset_t before;
    sigemptyset(&ofOutput);
    sigaddset(&ofOutput, SIGPIPE);
    sigaddset(&ofOutput, SIGXFSZ);
    sigprocmask(SIG_BLOCK, &ofOutput, &before);
    std::size_t left = std::strlen(text);
    pollfd output{STDERR_FILENO, POLLOUT, 0};
    while (left > 0 && poll(&output, 1, outputPatience) > 0 && (output.revents & POLLOUT) != 0) {
        const ssize_t written = write(STDERR_FILENO, text, std::min(left, pipeChunk));
        if (written <= 0) {
            break;
        }
        text += written;
        left -= static_cast<std::size_t>(written);
    }
    const timespec now{};
    while (sigtimedwait(&ofOutput, nullptr, &now) > 0) {
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

void showCrashReport(const char* text, const char*) noexcept
{
    char line[pipeChunk];
    std::size_t length = 0;
    for (; *text != '\0'; ++text) {
        if (*text != '\r') {
            line[length++] = *text;
        }
        if (length == sizeof line - 2) {
            line[length] = '\0';
            writeCrashLine(line);
            length = 0;
        }
    }
    line[length] = '\n';
    line[length + 1] = '\0';
    writeCrashLine(line);
}

void endCrashedProcess(int code) noexcept
{
    _exit(code);
}

} // namespace brvUtils::os
