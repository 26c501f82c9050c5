#include "brvUtils/core/Network.h"

#include "brvUtils/os/Network.h"

#include <iostream>

namespace brvUtils {
namespace {

unsigned int useCount = 0;

} // namespace

bool initNetworkSystem()
{
    if (useCount == 0 && os::startSockets() != os::error::none) {
        std::cout << "COM ERROR : requested version of winsock not available." << std::endl;
        return false;
    }
    ++useCount;
    return true;
}

void releaseNetworkSystem()
{
    if (useCount == 0) {
        return;
    }
    if (--useCount == 0) {
        os::stopSockets();
    }
}

} // namespace brvUtils
