#include "brvUtils/core/FileSystem.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/FileSystem.h"
#include "brvUtils/os/NetworkDrive.h"

#include <stdexcept>
#include <vector>

namespace brvUtils {
namespace {

using Utilities::Encoding::Mode;
using Utilities::Encoding::Transcode;

constexpr const wchar_t* separators = L"/\\";

/// What a path names; nothing is true of a missing one.
os::FileStatus statusOf(const std::wstring& path)
{
    os::FileStatus status;
    os::fileStatus(os::utf8FromWide(path), status);
    return status;
}

bool isSeparator(wchar_t c)
{
    return c == L'/' || c == L'\\';
}

bool folderExists(std::wstring path)
{
    if (path.empty() || path.size() > os::longestPath()) {
        return false;
    }
    // The root, of a drive too, is nothing without its separator.
    if (path.size() > 1 && isSeparator(path.back()) && path[path.size() - 2] != L':') {
        path.pop_back();
    }
    return statusOf(path).isFolder;
}

bool makeFolders(std::wstring path)
{
    if (path.size() > os::longestPath()) {
        return false;
    }
    while (path.size() > 3 && isSeparator(path.back())) {
        path.pop_back();
    }
    const std::size_t separator = path.find_last_of(separators);
    const std::wstring parent = path.substr(0, separator == std::wstring::npos ? 0 : separator);
    if (!parent.empty() && !folderExists(parent)) {
        makeFolders(parent);
    }
    os::makeFolder(os::utf8FromWide(path)); // somebody else may have been faster
    return folderExists(path);
}

bool endsWith(const std::wstring& text, const std::wstring& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::uint64_t deleteFiles(const std::wstring& folder, const std::wstring& suffix)
{
    std::vector<os::FolderEntry> entries;
    if (folder.empty() || folder.size() > os::longestPath()) {
        return 0;
    }
    os::listFolder(os::utf8FromWide(folder), entries); // what was listed before a fault counts
    std::uint64_t count = 0;
    for (const os::FolderEntry& entry : entries) {
        const std::wstring path = folder + L'\\' + os::wideFromUtf8(entry.name);
        if (entry.isFolder) {
            count += deleteFiles(path, suffix);
        } else if (endsWith(path, suffix)) {
            os::deleteFile(os::utf8FromWide(path));
            ++count;
        }
    }
    return count;
}

} // namespace

bool fileExist(const std::string& path, Mode mode)
{
    return fileExist(Transcode(path, mode));
}

bool fileExist(const std::wstring& path)
{
    return statusOf(path).isFile;
}

bool folderExist(const char* path, Mode mode)
{
    return path != nullptr && folderExists(Transcode(path, mode));
}

bool folderExist(const wchar_t* path)
{
    return path != nullptr && folderExists(path);
}

bool fileOrFolderExist(const std::string& path, Mode mode)
{
    return fileOrFolderExist(Transcode(path, mode));
}

bool fileOrFolderExist(const std::wstring& path)
{
    os::FileStatus status;
    return os::fileStatus(os::utf8FromWide(path), status) == os::error::none;
}

bool fileOrFolderIsReadable(const std::string& path, Mode mode)
{
    return fileOrFolderIsReadable(Transcode(path, mode));
}

bool fileOrFolderIsReadable(const std::wstring& path)
{
    return statusOf(path).readable;
}

bool fileOrFolderIsWritable(const std::string& path, Mode mode)
{
    return fileOrFolderIsWritable(Transcode(path, mode));
}

bool fileOrFolderIsWritable(const std::wstring& path)
{
    return statusOf(path).writable;
}

bool fileOrFolderIsExecutable(const std::string& path, Mode mode)
{
    return fileOrFolderIsExecutable(Transcode(path, mode));
}

bool fileOrFolderIsExecutable(const std::wstring& path)
{
    return statusOf(path).executable;
}

std::uint64_t fileSize(const char* path, Mode mode)
{
    return path != nullptr ? fileSize(Transcode(path, mode).c_str()) : 0;
}

std::uint64_t fileSize(const wchar_t* path)
{
    return path != nullptr ? statusOf(path).size : 0;
}

std::int64_t getModificationTime(const char* path, Mode mode)
{
    return path != nullptr ? getModificationTime(Transcode(path, mode).c_str()) : 0;
}

std::int64_t getModificationTime(const wchar_t* path)
{
    std::int64_t seconds = 0;
    if (path != nullptr) {
        os::modificationTime(os::utf8FromWide(path), seconds);
    }
    return seconds;
}

bool setModificationTime(const char* path, std::int64_t seconds, Mode mode)
{
    return path != nullptr && setModificationTime(Transcode(path, mode).c_str(), seconds);
}

bool setModificationTime(const wchar_t* path, std::int64_t seconds)
{
    return path != nullptr && os::setModificationTime(os::utf8FromWide(path), seconds) == os::error::none;
}

bool recursiveMkDir(const char* path)
{
    return path != nullptr && recursiveMkDir(os::wideFromLocal(path).c_str());
}

bool recursiveMkDir(const wchar_t* path)
{
    return path != nullptr && (folderExists(path) || makeFolders(path));
}

std::uint64_t recursiveDelete(const std::string& folder, const std::string& suffix)
{
    return deleteFiles(os::wideFromLocal(folder), os::wideFromLocal(suffix));
}

std::string getTempPath()
{
    std::string path;
    if (os::temporaryFolder(path) != os::error::none) {
        throw std::runtime_error("Could not get system temp path");
    }
    return os::localFromWide(os::wideFromUtf8(path));
}

std::string which(const std::string& name)
{
    return name;
}

std::string checkForLocalPath(const std::string& path)
{
    return os::localPath(path);
}

} // namespace brvUtils
