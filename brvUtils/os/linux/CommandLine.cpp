#include "brvUtils/os/CommandLine.h"

namespace brvUtils::os {

ErrorCode commandLine(std::vector<std::string>&)
{
    return error::notSupported;
}

} // namespace brvUtils::os
