#include "brvUtils/os/Encoding.h"

namespace brvUtils::os {

std::wstring wideFromLocal(const std::string& text)
{
    return wideFromUtf8(text);
}

std::string localFromWide(const std::wstring& text)
{
    return utf8FromWide(text);
}

} // namespace brvUtils::os
