#pragma once

#include <shared_mutex>

namespace brvUtils::os {

/// The C library lets nobody read the environment while somebody changes it. Never destroyed: there are readers until the
/// end. Visible, so that the dynamic linker makes one of those of all libraries that hold this layer.
[[gnu::visibility("default")]] inline std::shared_mutex& environmentMutex()
{
    static auto* const mutex = new std::shared_mutex;
    return *mutex;
}

} // namespace brvUtils::os
