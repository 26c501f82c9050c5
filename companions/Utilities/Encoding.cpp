#include "Utilities/Encoding.h"

#include "brvUtils/os/Encoding.h"

namespace os = brvUtils::os;

namespace Utilities::Encoding {

std::wstring Transcode(const std::string& narrow, Mode mode)
{
    return mode == Mode::Local8Bit ? os::wideFromLocal(narrow) : os::wideFromUtf8(narrow);
}

std::string Transcode(const std::wstring& wide, Mode mode)
{
    return mode == Mode::Local8Bit ? os::localFromWide(wide) : os::utf8FromWide(wide);
}

} // namespace Utilities::Encoding
