#pragma once

#include <cstdint>
#include <string>

#include "brvUtils/export.h"

/// \file
/// File names as text. `/` and `\` both separate folders, on every system; an extension includes its dot. Nothing asks
/// the file system or normalises a path, and any thread may call these. The forms on character buffers do what those on
/// strings do and write over the caller's buffer, which the result always fits.

namespace brvUtils {

/// What follows the last separator, or all of `path` if it has none.
BRVUTILS_API std::string fileName(const std::string& path);

/// What precedes the last separator; empty if there is none.
BRVUTILS_API std::string getPath(const std::string& path);

/// Leaves what follows the last separator.
BRVUTILS_API void removePath(std::string& path);
/// The same.
BRVUTILS_API void removePath(char* path);

/// Cuts the last dot and what follows it, unless a separator follows the dot. A name whose only dot is its first
/// character becomes empty.
BRVUTILS_API void removeExtension(std::string& path);
/// The same.
BRVUTILS_API void removeExtension(char* path);

/// Stores what starts at the last dot, or an empty text if there is no dot. Kept for callers: separators are not looked
/// at, so that "dir.v2/file" has the extension ".v2/file".
BRVUTILS_API void getExtension(const std::string& path, std::string& extension);
/// The same.
BRVUTILS_API void getExtension(const std::wstring& path, std::wstring& extension);
/// The same.
BRVUTILS_API void getExtension(const char* path, char* extension);

/// What follows the last `/`. A path without `/` comes back whole, with every `\` turned into `/` (kept for callers).
BRVUTILS_API std::string basename(const std::string& path);

/// A copy with every `/` replaced by `\`.
BRVUTILS_API std::string windowsStylePath(const std::string& path);

/// Writes `b` + `c` + `\` + `a` + `d` into `out`, whose size is the caller's care: all four lengths and two more.
BRVUTILS_API void buildFileName(const char* a, const char* b, const char* c, const char* d, char* out);

/// Base name of a recording that started `time` seconds after 1970 in UTC: run/1 at 2016-03-05 07:08:09 gives
/// "run_1-05_03_2016-07h08m09s". Separators in `name` become `_`. For a time before 1970 or after the year 3000 the
/// C library's `perror` reports "buildRecordBaseName" and the date in the result means nothing.
BRVUTILS_API std::string buildRecordBaseName(const std::string& name, std::int64_t time);

} // namespace brvUtils
