#include "brvUtils/os/DumpFile.h"

namespace brvUtils::os {

// Built without Breakpad: there are no dumps.
bool writeDumpFile(const char*, DumpContents, _EXCEPTION_POINTERS*) noexcept
{
    return false;
}

} // namespace brvUtils::os
