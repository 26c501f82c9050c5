#pragma once

#include <StudioVersion/export.h>

/// \file
/// The release of the suite that this computer runs: 1.6 has the major version 1 and the minor version 6. Any thread may
/// ask. At global scope for callers.

STUDIOVERSION_API int getMajorVersion();
STUDIOVERSION_API int getMinorVersion();
