#pragma once

#include <string>

namespace brvUtils::os {

// The layer speaks UTF-8 unless a function says otherwise.

/// Wide text of UTF-8. A byte that is no part of valid UTF-8 becomes the lone surrogate U+DC00 + byte.
std::wstring wideFromUtf8(const std::string& text);

/// UTF-8 of wide text. The lone surrogates above become their bytes again; other ones become U+FFFD.
std::string utf8FromWide(const std::wstring& text);

/// Wide text of text in the process's 8-bit code page; that is UTF-8 on Linux.
std::wstring wideFromLocal(const std::string& text);

/// Text in the process's 8-bit code page of wide text, with the system's replacement for what the page lacks.
std::string localFromWide(const std::wstring& text);

} // namespace brvUtils::os
