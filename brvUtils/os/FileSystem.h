#pragma once

#include "brvUtils/os/Error.h"

#include <memory>
#include <string>

namespace brvUtils::os {

// Paths are UTF-8. `/` and `\` both separate folders, on every system. Any thread may call these; all may wait for a disk
// or a network.

/// The bytes of a file, which others may replace meanwhile: they are those of one of its versions. `contents` is as it
/// was when an error is given.
ErrorCode readFile(const std::string& path, std::string& contents);

/// Makes `contents` the bytes of a file, which need not exist. They are written to a file beside it that then takes its
/// place in one step, so that readers, and whoever comes after a kill or on a full disk, find the old bytes or the new
/// ones, whole. Keeps the old file's mode (Linux, where its owner stays too if the system allows) or attributes
/// (Windows). On Linux a link stays and its target is replaced. A read-only file and what is no file is refused; on
/// Windows the call waits up to a second for others to close the file. On an error nothing has changed and no file is
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
