#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/linux/ElfSection.h"
#include "brvUtils/os/PeResource.h"

#include <algorithm>
#include <limits>

namespace brvUtils::os {
namespace {

constexpr const char* versionSection = ".rsrc.version"; // as brv_add_version_info names it
constexpr std::uint32_t longestBlock = 0xFFFF;

FilePart versionResource(const std::string& path, InputFile& file)
{
    if (file.open(path) != error::none) {
        return {};
    }
    const FilePart part = peVersionResource(file);
    return part.size != 0 ? part : elfSection(file, versionSection);
}

} // namespace

std::uint32_t versionInfoSize(const std::string& file)
{
    InputFile input;
    const std::uint64_t size = versionResource(file, input).size;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

bool readVersionInfo(const std::string& file, std::uint32_t size, std::string& data)
{
    InputFile input;
    const FilePart part = versionResource(file, input);
    data.assign(std::min(size, longestBlock), '\0');
    return part.size >= data.size() && isWithin(input, part) && readWhole(input, part.offset, data.data(), data.size());
}

} // namespace brvUtils::os
