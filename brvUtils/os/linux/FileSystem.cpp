#include "brvUtils/os/FileSystem.h"

#include "brvUtils/os/Calendar.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/NativePath.h"

#include <climits>
#include <cstdlib>
#include <cwctype>
#include <fcntl.h>
#include <filesystem>
#include <locale.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

ErrorCode outcome(int result)
{
    return result == 0 ? error::none : fromErrno(errno);
}

/// The name without case, in all scripts, whatever the locale of the process.
std::wstring folded(const std::string& name)
{
    static const locale_t anywhere = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    std::wstring text = wideFromUtf8(name);
    for (wchar_t& c : text) {
        const auto letter = static_cast<std::wint_t>(c);
        c = static_cast<wchar_t>(anywhere != nullptr ? towupper_l(letter, anywhere) : std::towupper(letter));
    }
    return text;
}

} // namespace

std::size_t longestPath()
{
    return PATH_MAX - 1;
}

ErrorCode fileStatus(const std::string& path, FileStatus& status)
{
    struct stat entry {};
    if (stat(nativePath(path).c_str(), &entry) != 0) {
        return fromErrno(errno);
    }
    status.isFile = S_ISREG(entry.st_mode);
    status.isFolder = S_ISDIR(entry.st_mode);
    status.readable = (entry.st_mode & S_IRUSR) != 0;
    status.writable = (entry.st_mode & S_IWUSR) != 0;
    status.executable = (entry.st_mode & S_IXUSR) != 0;
    status.size = status.isFile ? static_cast<std::uint64_t>(entry.st_size) : 0;
    return error::none;
}

ErrorCode modificationTime(const std::string& path, std::int64_t& seconds)
{
    struct stat entry {};
    if (stat(nativePath(path).c_str(), &entry) != 0) {
        return fromErrno(errno);
    }
    seconds = entry.st_mtim.tv_sec;
    return error::none;
}

ErrorCode setModificationTime(const std::string& path, std::int64_t seconds)
{
    if (seconds < 0 || seconds > endOfCalendar) {
        return error::invalidParameter;
    }
    Descriptor file;
    file.take(::open(nativePath(path).c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const timespec time { seconds, 0 };
    const timespec times[] = { time, time };
    return file.open() ? outcome(futimens(file.get(), times)) : fromErrno(errno);
}

ErrorCode makeFolder(const std::string& path)
{
    return outcome(mkdir(nativePath(path).c_str(), 0777));
}

ErrorCode listFolder(const std::string& path, std::vector<FolderEntry>& entries)
{
    std::error_code fault;
    entries.clear();
    for (std::filesystem::directory_iterator entry(nativePath(path), fault), end; !fault && entry != end; entry.increment(fault)) {
        std::string name = entry->path().filename().string();
        if (name.find('\\') == std::string::npos) {
            std::error_code gone;
            entries.push_back({ std::move(name), std::filesystem::is_directory(entry->symlink_status(gone)) });
        }
    }
    return fromErrno(fault.value());
}

ErrorCode deleteFile(const std::string& path)
{
    return outcome(unlink(nativePath(path).c_str()));
}

std::string pathForLibraries(const std::string& path)
{
    return nativePath(path);
}

ErrorCode temporaryFolder(std::string& path)
{
    const char* chosen = std::getenv("TMPDIR");
    path = nativePath(chosen != nullptr && *chosen != '\0' ? chosen : "/tmp");
    if (path.back() != '/') {
        path += '/';
    }
    return error::none;
}

std::string spellingOnDisk(const std::string& path)
{
    const std::string native = nativePath(path);
    const std::size_t start = native.rfind('/') + 1; // npos + 1 is the start
    const std::string name = native.substr(start);
    struct stat entry {};
    std::vector<FolderEntry> entries;
    if (lstat(native.c_str(), &entry) == 0 || listFolder(start == 0 ? "." : native.substr(0, start), entries) != error::none) {
        return name;
    }
    const std::wstring wanted = folded(name);
    const std::string* found = nullptr;
    for (const FolderEntry& candidate : entries) {
        if (folded(candidate.name) == wanted && (found == nullptr || candidate.name < *found)) {
            found = &candidate.name;
        }
    }
    return found != nullptr ? *found : name;
}

bool sameFileName(const std::string& a, const std::string& b)
{
    return a == b;
}

} // namespace brvUtils::os
