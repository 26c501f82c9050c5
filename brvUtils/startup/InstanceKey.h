#pragma once

#include <string>

#include "brvUtils/export.h"

/// \file
/// Several copies of the suite may run on one computer. Each is an instance, named by the environment variable
/// `STUDIO_INSTANCE`; its name stands before the name of every system object, so that two instances never meet.

namespace brvUtils {

/// The instance's name, empty where the variable is not defined. Read by the first call of the process and remembered;
/// the text lives as long as the process. On Windows in the process's 8-bit code page. Any thread.
BRVUTILS_API const char* getInstanceKey();

/// The instance's name followed directly by `key`. Any thread.
BRVUTILS_API std::string buildKeyWithInstance(const std::string& key);

} // namespace brvUtils
