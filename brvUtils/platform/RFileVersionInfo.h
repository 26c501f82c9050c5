#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "brvUtils/export.h"

namespace brvUtils {

/// The version resource of an executable or library, in its first language: who made it, what it is, which version. Read once,
/// at construction. PE files on every system; on Linux also ELF files that carry the same resource in a section, as the
/// CMake function `brv_add_version_info` makes them. An object may be read by any number of threads.
class BRVUTILS_API RFileVersionInfo
{
public:
    /// Reads the resource of a file. \param file UTF-8.
    /// \throw std::invalid_argument "Unable to compute information for FILE" without a resource or a readable file, "Unable to
    ///        retrieve version information from FILE" when it cannot be read, "Unable to query values in FILE" when it
    ///        is damaged or names no language.
    explicit RFileVersionInfo(const std::string& file);

    /// Copies share what was read.
    RFileVersionInfo(const RFileVersionInfo&) = default;
    /// The same.
    RFileVersionInfo& operator=(const RFileVersionInfo&) = default;
    virtual ~RFileVersionInfo();

    /// The file name that was given.
    std::string module() const;

    /// An entry's text, in UTF-8. \param name such as "FileVersion"; case does not count.
    /// \throw std::runtime_error "Unable to retrieve NAME value in FILE" when there is none.
    std::string key(const std::string& name) const;

    /// The nine usual entries by name, empty where the file has none: Comments, CompanyName, FileDescription, FileVersion,
    /// InternalName, LegalCopyright, OriginalFilename, ProductName, ProductVersion.
    std::map<std::string, std::string> key() const;

private:
    struct Translation
    {
        std::uint16_t language = 0;
        std::uint16_t codePage = 0;
    };

    std::string module_;
    Translation translation_;
    std::shared_ptr<const std::string> data_; ///< The whole resource.
};

} // namespace brvUtils
