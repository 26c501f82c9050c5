#pragma once

#include <string>

#include "brvUtils/export.h"

namespace brvUtils {

/// A text that all processes of this computer share under a key and a name. The first call on a computer stores the
/// caller's text, later ones get what is stored. On Windows it lies in the registry, for all users, on Linux in a file per key
/// below `/var/lib/brvUtils`, or below what the environment variable `STUDIO_SETTINGS_DIR` names.
///
/// Any thread and any process at any time: of several that come first one stores, and all get its text.
/// \param subKey of the key; folders of it are separated by `\`. UTF-8, as the others. Case counts in keys and
///        names on Linux, and does not on Windows.
/// \param text the default that is stored where the key is new; replaced by what is stored, if that is a text of at most 255
///        bytes, and else as it was.
/// \return whether `text` is what is stored now; false when the system refuses, the key holds no such name or no text.
BRVUTILS_API bool machineSetting(const std::string& subKey, const std::string& name, std::string& text);

} // namespace brvUtils
