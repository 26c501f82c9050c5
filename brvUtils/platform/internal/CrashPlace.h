#pragma once

#include <ctime>

#include "brvUtils/platform/internal/CrashText.h"

namespace brvUtils {

/// What a crash is called by.
struct CrashFacts
{
    const char* module; ///< File name of the program.
    std::tm time; ///< Local.
    unsigned long process;
    const char* machine;
    const char* user;
    const char* version; ///< Of this library, with four numbers.
    char separator; ///< Of folders.
};

/// Where the dump of a crash goes.
struct CrashPlace
{
    CrashText<4095> folder;
    CrashText<1023> file; ///< Its name in there.
    CrashText<4095> path; ///< Both.

    /// Whether all of it fits; what does not is cut.
    bool fits() const { return folder.fits() && file.fits() && path.fits(); }
};

/// \param root where the folders of all versions are.
void findCrashPlace(const char* root, const CrashFacts& facts, CrashPlace& place);

} // namespace brvUtils
