#pragma once

#include <string>

#include <brv/export.h>

/// Text functions on UTF-8 paths, in which `/` and `\` both separate folders. Only `RestoreCase` asks the file system. Any
/// thread may call them.
namespace brv {

/// `path` with uniform separators and without redundant parts: every `\` becomes `/`, repeated and trailing separators
/// and single dots go, and `..` takes the folder before it along. A root (`/`, `C:/`, `//server/share`) stays and cannot be left
/// by `..`; a relative path keeps the `..` that lead out of it. An empty path stays empty, and a path of which nothing
/// is left becomes ".".
BRV_API std::string NormalizePath(const std::string& path);

/// `path` with every `\` turned into `/`, and nothing else: each character keeps its place.
BRV_API std::string FixPathSeparators(const std::string& path);

/// The name by which `file` is reached from `folder`, normalized: "../data/x.csv", or "." for the folder itself. A file
/// that cannot be reached so (another drive or share, or only one of the two is absolute) comes back normalized. Case
/// counts where it does in the system's file names.
BRV_API std::string RelativeFilename(const std::string& folder, const std::string& file);

/// `path` with `/` as separator and each part spelled as the disk spells it, from the first part on; what follows a part
/// that is not there stays, as do drives, shares and dots. Where case counts, a part that is not there stands for
/// the first name in byte order that differs in case alone. Asks the disk once per part; never fails.
BRV_API std::string RestoreCase(const std::string& path);

} // namespace brv
