#include "brvUtils/platform/RFileVersionInfo.h"

#include "brvUtils/os/VersionInfo.h"

#include <cstdio>
#include <stdexcept>

namespace brvUtils {

RFileVersionInfo::RFileVersionInfo(const std::string& file)
    : module_(file)
{
    const std::uint32_t size = os::versionInfoSize(file);
    if (size == 0) {
        throw std::invalid_argument("Unable to compute information for " + file);
    }
    std::string data;
    if (!os::readVersionInfo(file, size, data)) {
        throw std::invalid_argument("Unable to retrieve version information from " + file);
    }
    if (!os::versionInfoHasRoot(data) || !os::versionInfoTranslation(data, translation_.language, translation_.codePage)) {
        throw std::invalid_argument("Unable to query values in " + file);
    }
    data_ = std::make_shared<const std::string>(std::move(data));
}

RFileVersionInfo::~RFileVersionInfo() = default;

std::string RFileVersionInfo::module() const
{
    return module_;
}

std::string RFileVersionInfo::key(const std::string& name) const
{
    char table[40];
    std::snprintf(table, sizeof table, "\\StringFileInfo\\%04x%04x\\", unsigned{translation_.language}, unsigned{translation_.codePage});
    std::string text;
    if (!os::versionInfoText(*data_, table + name, text)) {
        throw std::runtime_error("Unable to retrieve " + name + " value in " + module_);
    }
    return text;
}

std::map<std::string, std::string> RFileVersionInfo::key() const
{
    std::map<std::string, std::string> entries {{"Comments", {}}, {"CompanyName", {}}, {"FileDescription", {}}, {"FileVersion", {}},
        {"InternalName", {}}, {"LegalCopyright", {}}, {"OriginalFilename", {}}, {"ProductName", {}}, {"ProductVersion", {}}};
    for (auto& [name, text] : entries) {
        try {
            text = key(name);
        } catch (const std::runtime_error&) {
            // stays empty
        }
    }
    return entries;
}

} // namespace brvUtils
