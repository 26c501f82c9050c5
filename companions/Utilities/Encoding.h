#pragma once

#include <string>

#include <Utilities/export.h>

/// Narrow text to wide text and back. Wide text is UTF-16 on Windows and UTF-32 elsewhere, as `wchar_t` is there.
/// Every function may be called from any thread.
namespace Utilities::Encoding {

/// How narrow text is encoded.
enum class Mode {
    Local8Bit = 0, ///< The 8-bit code page of the process; UTF-8 on systems that have none.
    Utf8 = 1 ///< UTF-8: configuration files, paths and everything else that the suite exchanges.
};

/// Wide text of `narrow`. Never fails: a byte that is not valid in UTF-8 becomes the lone surrogate U+DC00 + byte, so
/// that a file name of any bytes survives the way to wide text and back; in a code page it becomes the system's
/// replacement character.
UTILITIES_API std::wstring Transcode(const std::string& narrow, Mode mode = Mode::Utf8);

/// Narrow text of `wide`, the reverse of the above. Never fails: what cannot be expressed becomes U+FFFD in UTF-8 and
/// the system's replacement character in a code page.
UTILITIES_API std::string Transcode(const std::wstring& wide, Mode mode = Mode::Utf8);

} // namespace Utilities::Encoding
