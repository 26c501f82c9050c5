#pragma once

#include <StudioVersion/export.h>

/// \file
/// The release of the suite that this computer runs: 1.6 has the major version 1 and the minor version 6. Any thread may
/// ask. At global scope for callers.

/// Of 1.6 the 1.
STUDIOVERSION_API int getMajorVersion();

/// Of 1.6 the 6.
STUDIOVERSION_API int getMinorVersion();
