#pragma once

#include <cstdint>
#include <string>

#include "brvUtils/export.h"
#include <Utilities/Encoding.h>

/// \file
/// Queries and changes of the file system. `/` and `\` both separate folders, on every system. Narrow forms take the path
/// in the encoding that `mode` says and then do what the wide forms do. What is missing is answered by false, 0 or an
/// empty text, never by an exception. Links are followed where nothing else is said. Any thread may call these; all may
/// wait for a disk or a network.

namespace brvUtils {

/// True for a regular file.
BRVUTILS_API bool fileExist(const std::string& path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool fileExist(const std::wstring& path);

/// True for a folder; one separator may stand at its end, and one alone is the root. False for a null or empty path, and
/// on Windows for one of more than 260 characters.
BRVUTILS_API bool folderExist(const char* path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool folderExist(const wchar_t* path);

/// True for whatever the path names: a device counts, too.
BRVUTILS_API bool fileOrFolderExist(const std::string& path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool fileOrFolderExist(const std::wstring& path);

/// What the mode of the file or folder grants to its owner, who need not be this user: opening is the only proof. On
/// Windows everything is readable, and writable unless read-only; folders and programs are executable.
BRVUTILS_API bool fileOrFolderIsReadable(const std::string& path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool fileOrFolderIsReadable(const std::wstring& path);
/// The same for writing.
BRVUTILS_API bool fileOrFolderIsWritable(const std::string& path, Utilities::Encoding::Mode mode);
/// The same for writing.
BRVUTILS_API bool fileOrFolderIsWritable(const std::wstring& path);
/// The same for running a program, or for a folder for reaching what is in it.
BRVUTILS_API bool fileOrFolderIsExecutable(const std::string& path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool fileOrFolderIsExecutable(const std::wstring& path);

/// Size in bytes; 0 also for a missing file and for a null or empty path.
BRVUTILS_API std::uint64_t fileSize(const char* path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API std::uint64_t fileSize(const wchar_t* path);

/// When a file or folder was last modified, in seconds since 1970 UTC; 0 also when it is missing or the path is null.
BRVUTILS_API std::int64_t getModificationTime(const char* path, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API std::int64_t getModificationTime(const wchar_t* path);

/// Sets when a file was last modified and last read, in seconds since 1970 UTC up to the year 3000. False for a null
/// path, another time, and what cannot be opened for reading and writing, as a folder.
BRVUTILS_API bool setModificationTime(const char* path, std::int64_t seconds, Utilities::Encoding::Mode mode);
/// The same.
BRVUTILS_API bool setModificationTime(const wchar_t* path, std::int64_t seconds);

/// Creates a folder and all missing ones above it. True when the folder is there in the end, also when it was before.
/// False for a null path, and on Windows for one of more than 260 characters. The narrow form takes the text in the
/// local code page, which is UTF-8 on Linux.
BRVUTILS_API bool recursiveMkDir(const char* path);
/// The same.
BRVUTILS_API bool recursiveMkDir(const wchar_t* path);

/// Deletes, in a folder and all below, every file whose name ends with `suffix`; every file when that is empty. Compared
/// is the end of the whole path, with a `\` before each name. Read-only files go, too; folders stay. Links to folders
/// are not followed: on Linux they are deleted as files are. Gives the number of files that it tried to delete (kept for
/// callers: failures count). Texts are in the local code page, which is UTF-8 on Linux.
BRVUTILS_API std::uint64_t recursiveDelete(const std::string& folder, const std::string& suffix);

/// The system's folder for temporary files, with a separator at its end, in the local code page; on Linux that is
/// `TMPDIR`, else "/tmp/". Throws `std::runtime_error` when the system does not tell.
BRVUTILS_API std::string getTempPath();

/// `name`, unchanged: nothing is searched for (kept for callers).
BRVUTILS_API std::string which(const std::string& name);

/// The local path of a file, UTF-8, that is reached over a network drive, or an NFS mount on Linux, although it lies on
/// this very computer; any other path unchanged. May ask the network and block.
BRVUTILS_API std::string checkForLocalPath(const std::string& path);

} // namespace brvUtils
