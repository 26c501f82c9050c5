#include "brvUtils/core/Network.h"

#include "brvUtils/os/Network.h"

#include <iostream>
#include <mutex>

namespace brvUtils {
namespace {

std::mutex mutex;
unsigned int useCount = 0;

} // namespace

bool initNetworkSystem()
{
    const std::lock_guard guard(mutex);
    if (useCount == 0 && os::startSockets() != os::error::none) {
        std::cout << "COM ERROR : requested version of winsock not available." << std::endl;
        return false;
    }
    ++useCount;
    return true;
}

void releaseNetworkSystem()
{
    const std::lock_guard guard(mutex);
    if (useCount == 0) {
        return;
    }
    if (--useCount == 0) {
        os::stopSockets();
    }
}

} // namespace brvUtils
