#pragma once

#include <shared_mutex>

namespace brvUtils::os {

/// C libraries let nobody read the environment while somebody changes it. Never destroyed: there are readers until the end.
inline std::shared_mutex& environmentMutex()
{
    static auto* const mutex = new std::shared_mutex;
    return *mutex;
}

} // namespace brvUtils::os
