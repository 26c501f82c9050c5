#pragma once

#include <string>

#include <brv/export.h>

/// Text functions on paths. They never ask the file system and may be called from any thread.
namespace brv {

/// `path` with uniform separators and without redundant parts: every `\` becomes `/`, repeated and trailing separators
/// and `.` go, and `..` takes the folder before it along. A root (`/`, `C:/`, `//server/share`) stays and cannot be left
/// by `..`; a relative path keeps the `..` that lead out of it. An empty path stays empty, and a path of which nothing
/// is left becomes `.`.
BRV_API std::string NormalizePath(const std::string& path);

} // namespace brv
