#pragma once

#include "brvUtils/os/Error.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brvUtils::os {

// Paths are UTF-8. `/` and `\` both separate folders, on every system. Any thread may call these; all may wait for a disk
// or a network.

/// The characters that a path may have here, as wide text.
std::size_t longestPath();

struct FileStatus
{
    bool isFile = false; ///< A regular file. Devices and the like are neither this nor a folder.
    bool isFolder = false;
    bool readable = false; ///< What the owner may do; on Windows what the run-time library makes of attributes and name.
    bool writable = false;
    bool executable = false;
    std::uint64_t size = 0; ///< In bytes; 0 for what is no file.
};

/// What a path names, behind links. `status` is as it was when an error is given.
ErrorCode fileStatus(const std::string& path, FileStatus& status);

/// When a file or folder was last modified, in whole seconds since 1970 UTC, cut downwards.
ErrorCode modificationTime(const std::string& path, std::int64_t& seconds);

/// Sets the times of last access and of last modification of a file that can be opened for reading and writing. The time
/// must lie in the years 1970 to 3000.
ErrorCode setModificationTime(const std::string& path, std::int64_t seconds);

/// The path for a library that opens files by itself and takes UTF-8, with the separators that the system knows.
std::string pathForLibraries(const std::string& path);

/// Makes a folder, whose parent must exist.
ErrorCode makeFolder(const std::string& path);

struct FolderEntry
{
    std::string name;
    bool isFolder = false; ///< Not for a link to a folder.
};

/// The entries of a folder, in no order, without `.` and `..`. Left out are names that no path can hold, since they hold
/// a separator (Linux), and the first entry of a drive's root (Windows: its place is that of `.` everywhere else).
ErrorCode listFolder(const std::string& path, std::vector<FolderEntry>& entries);

/// Deletes a file, also a read-only one, or a link.
ErrorCode deleteFile(const std::string& path);

/// The system's folder for temporary files, with a separator at its end. Need not exist.
ErrorCode temporaryFolder(std::string& path);

/// The last part of a path as the disk spells it. Where case counts and nothing has the very name, that is the first name
/// in byte order that differs in case alone; the part itself when there is none.
std::string spellingOnDisk(const std::string& path);

/// Whether two names mean the same entry of a folder. Where case does not count it does not count here either.
bool sameFileName(const std::string& a, const std::string& b);

/// The bytes of a file, which others may replace meanwhile: they are those of one of its versions. On Windows
/// the call tries for up to a second to open a file that is refused, as one is while it is being replaced; a folder is an
/// error at once. `contents` is as it was when an error is given.
ErrorCode readFile(const std::string& path, std::string& contents);

/// Makes `contents` the bytes of a file, which need not exist. They are written to a file beside it that then takes its
/// place in one step, so that readers, and whoever comes after a kill or on a full disk, find the old bytes or the new
/// ones, whole. Keeps the old file's mode (Linux, where its owner stays too if the system allows) or attributes
/// (Windows). On Linux a link stays and its target is replaced. A read-only file and what is no file is refused; on
/// Windows the call waits up to a second for others to close the file, where it must: before Windows 10, on other
/// computers' disks, and for those who do not share it for deletion. On an error nothing has changed and no file is
/// left; a process that is killed may leave the one beside.
ErrorCode replaceFile(const std::string& path, const std::string& contents);

/// Excludes all others that lock the same path, threads of this process and other processes, from construction to
/// destruction. Waits as long as it takes; a killed holder frees it. The file itself may be read and replaced by anybody;
/// its folder must exist and the file be writable.
///
/// On Linux the lock is one on the file: a file that is not there is made, empty, and taken away again when it still is
/// at the end. On Windows it is a file whose name has ".lock" in addition and which goes away with its holder. Another
/// computer that sees the same folder is excluded as well where the network file system carries locks.
class FileLock
{
public:
    explicit FileLock(const std::string& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// `error::none` while the lock is held; otherwise why it could not be had.
    ErrorCode error() const { return error_; }

private:
    struct Held;
    std::unique_ptr<Held> held_;
    ErrorCode error_ = error::none;
};

} // namespace brvUtils::os
