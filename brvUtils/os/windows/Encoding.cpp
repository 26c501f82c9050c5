#include "brvUtils/os/Encoding.h"

#include <windows.h>

namespace brvUtils::os {

std::wstring wideFromLocal(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string localFromWide(const std::wstring& text)
{
    const int size = static_cast<int>(text.size());
    std::string local(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), size, nullptr, 0, nullptr, nullptr)), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), size, local.data(), static_cast<int>(local.size()), nullptr, nullptr);
    return local;
}

} // namespace brvUtils::os
