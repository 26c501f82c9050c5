#pragma once

#include <string>

#include <Utilities/Encoding.h>

#include "brvUtils/export.h"

/// \file
/// Generic paths: texts such as "${STUDIO_PATH}/data" that mean another folder on every computer. Any thread may call
/// these while no thread changes the environment by other means than this library's.

namespace brvUtils {

/// The path with every reference "${NAME}" replaced by the environment variable of that name, references inside the
/// values included. `PlatformName` is always "x64". After a reference to `STUDIO_PATH` a separator is put in where there
/// is none. A reference without an end, to a variable that is not defined, or that leads back to itself is reported in a
/// line on the standard output, and the path then comes back unchanged.
/// \param path generic. \param mode how it is encoded; values are transcoded to it.
BRVUTILS_API std::string resolveGenericPath(const std::string& path, Utilities::Encoding::Mode mode = Utilities::Encoding::Mode::Utf8);
/// The same.
BRVUTILS_API std::wstring resolveGenericPath(const std::wstring& path);

/// The folder in the user's local space that mirrors a generic folder: the text with a leading "${STUDIO_PATH}" replaced
/// by the value of `LOCAL_STUDIO_PATH`. Empty when that variable is not defined or the text does not start so. UTF-8.
BRVUTILS_API std::string getVeloraLocalFolderPath(const std::string& generic);

} // namespace brvUtils
