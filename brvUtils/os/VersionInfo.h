#pragma once

#include "brvUtils/os/Error.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace brvUtils::os {

// Version resources of files, as the version library of Windows answers them. Paths and texts are UTF-8. Any thread.

/// The bytes that the version resource of a file takes; 0 when there is none or the file cannot be read.
std::uint32_t versionInfoSize(const std::string& file);

/// Reads the resource. \param data of the size that versionInfoSize told; set to the bytes.
bool readVersionInfo(const std::string& file, std::string& data);

/// Whether the resource is whole as far as its root block.
bool versionInfoHasRoot(const std::string& data);

/// The first pair of the translation table. False when there is none.
bool versionInfoTranslation(const std::string& data, std::uint16_t& language, std::uint16_t& codePage);

/// The text under a path such as `\StringFileInfo\040904b0\FileVersion`, in which case does not count. False when there is none.
bool versionInfoText(const std::string& data, const std::string& path, std::string& text);

} // namespace brvUtils::os
