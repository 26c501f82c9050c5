#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/LittleEndian.h"
#include "brvUtils/os/VersionBlock.h"

namespace brvUtils::os {
namespace {

VersionBlock blockAt(const std::string& data, const std::string& path)
{
    VersionBlock block = VersionBlock::root(data);
    for (std::size_t begin = 0; begin < path.size();) { // each name stands behind a separator
        const std::size_t end = path.find('\\', ++begin);
        block = block.child(path.substr(begin, end - begin));
        begin = end == std::string::npos ? path.size() : end;
    }
    return block;
}

} // namespace

// By the library's own look at the bytes on every system: that of Windows believes their lengths, and may read behind their end.

bool versionInfoHasRoot(const std::string& data)
{
    return static_cast<bool>(VersionBlock::root(data));
}

bool versionInfoTranslation(const std::string& data, std::uint16_t& language, std::uint16_t& codePage)
{
    const std::string value = blockAt(data, "\\VarFileInfo\\Translation").value();
    if (value.size() < 4) {
        return false;
    }
    language = littleEndian<std::uint16_t>(value.data());
    codePage = littleEndian<std::uint16_t>(value.data() + 2);
    return true;
}

bool versionInfoText(const std::string& data, const std::string& path, std::string& text)
{
    const VersionBlock block = blockAt(data, path);
    if (!block) {
        return false;
    }
    text = block.text();
    return true;
}

} // namespace brvUtils::os
