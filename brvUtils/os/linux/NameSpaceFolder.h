#pragma once

#include "brvUtils/os/Error.h"

#include <string>
#include <sys/types.h>

namespace brvUtils::os {

/// The folder that holds the table and the segments of a name space: one per user below the shared-memory file system,
/// or the one that STUDIO_IPC_NAMESPACE names (a path, or a name below that file system), which a group shares.
class NameSpaceFolder
{
public:
    NameSpaceFolder() = default;
    ~NameSpaceFolder();
    NameSpaceFolder(const NameSpaceFolder&) = delete;
    NameSpaceFolder& operator=(const NameSpaceFolder&) = delete;

    /// Opens the folder, making it when it is missing. error::accessDenied when it is a link, no folder, or open to
    /// people whom it should not be open to.
    ErrorCode open();

    /// The same for somebody who only looks: nothing is made or changed. error::fileNotFound or error::pathNotFound when
    /// there is no such folder.
    ErrorCode openExisting();
    void close();

    /// Removes the folder when it is this user's own and empty.
    void removeIfEmpty() const;

    int descriptor() const { return descriptor_; }
    mode_t fileMode() const { return shared_ ? 0660 : 0600; }

    /// Once it was opened, or that was tried.
    const std::string& path() const { return path_; }

private:
    void choose();
    ErrorCode openChosen(bool& ours);

    std::string path_;
    bool shared_ = false;
    int descriptor_ = -1;
};

} // namespace brvUtils::os
