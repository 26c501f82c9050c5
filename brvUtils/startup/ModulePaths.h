#pragma once

#include <string>

#include "brvUtils/export.h"

/// \file
/// The suite's root folders, and where the running module lies. Any thread may call these, as long as none changes the
/// environment.

namespace brvUtils {

/// Value of the environment variable `STUDIO_PATH`, or null where it is not defined. Read at each call; the text lives
/// as long as the process. On Windows in the process's 8-bit code page, unlike the paths of the module below, which are UTF-8.
BRVUTILS_API const char* getBasePath();

/// The same for `COMPUTE_PATH`.
BRVUTILS_API const char* getComputePath();

/// Full file name of the process's executable, not of this library, in UTF-8. Empty when the system does not tell. A
/// path of more than 259 characters is cut on Windows.
BRVUTILS_API std::string GetModuleFilePath();

/// Folder of the process's executable, without a separator at its end.
BRVUTILS_API std::string GetModulePath();

/// Full file name of this library, in UTF-8; on Linux behind links. Empty when the system does not tell, and from 2048 bytes
/// on. The first call takes about as long as loading a small library.
BRVUTILS_API std::string getBrvUtilsPath();

/// The folder that the suite is installed in: what stands before the last "/bin/win32", or else the last "/bin/x64", of
/// the executable's folder, in whatever case, with `/` as separator. Empty when neither occurs.
BRVUTILS_API std::string getBaseInstallPath();

} // namespace brvUtils
