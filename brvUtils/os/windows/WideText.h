#pragma once

#include <windows.h>

namespace brvUtils::os {

/// UTF-8 text as the system takes it, in place, without the heap.
template <int size>
class WideText
{
public:
    /// \return false when it is too long.
    bool set(const char* utf8) noexcept { return MultiByteToWideChar(CP_UTF8, 0, utf8, -1, text_, size) != 0; }
    const wchar_t* text() const noexcept { return text_; }
    wchar_t* text() noexcept { return text_; }

private:
    wchar_t text_[size] {};
};

using WidePath = WideText<1024>; // the system takes few that are longer than 260

} // namespace brvUtils::os
