#pragma once

#include <cstdint>
#include <string>

namespace brvUtils::os {

// Version resources of files. Paths and texts are UTF-8. Any thread.
//
// Of a resource in several languages the neutral one is taken, else the user's where the system knows it, else American
// English, else the first. Windows also finds files without a folder in their name where it looks for libraries.

/// The bytes that the version resource of a file takes; 0 when there is none or the file cannot be read.
std::uint32_t versionInfoSize(const std::string& file);

/// Reads the resource; a block's length has 16 bits, so that bytes behind the first 65,535 need not be read. \param data of the
/// size that versionInfoSize told; set to the bytes. False when the file does not hold them.
bool readVersionInfo(const std::string& file, std::uint32_t size, std::string& data);

/// Whether the resource is whole as far as its root block's head. What is cut behind it is answered as far as it goes.
bool versionInfoHasRoot(const std::string& data);

/// The first pair of the translation table. False when there is none.
bool versionInfoTranslation(const std::string& data, std::uint16_t& language, std::uint16_t& codePage);

/// The text under a path such as `\StringFileInfo\040904b0\FileVersion`, in which case does not count. False when there is none.
bool versionInfoText(const std::string& data, const std::string& path, std::string& text);

} // namespace brvUtils::os
