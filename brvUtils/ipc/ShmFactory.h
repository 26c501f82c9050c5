#pragma once

#include <cstddef>

#include "brvUtils/export.h"
#include "brvUtils/ipc/IShm.h"

namespace brvUtils {

/// The segment factory of modules, which lets the selected configuration choose where a segment lives. Its file "shm.cfg"
/// says so in the section "<name>", or "<name>_<version>" for a version above 0: a `Type` that is exactly "VMIC" stands
/// for reflective memory (ShmVmic, for which \p withInstance plays no part); with anything else, without file, section or
/// entry, or when ShmVmic throws ConfigurationError, it is a ShmWin32.
/// \return owned by the caller. Null for reflective memory that cannot be had; a ShmWin32 also when it has no memory.
BRVUTILS_API IShm* newShm(char const* name, size_t size, short version, bool withInstance);

} // namespace brvUtils
