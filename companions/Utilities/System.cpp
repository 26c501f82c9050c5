#include "Utilities/System.h"

#include "brvUtils/os/User.h"

namespace Utilities::System {

std::string GetEffectiveUserName()
{
    return brvUtils::os::effectiveUserName();
}

} // namespace Utilities::System
