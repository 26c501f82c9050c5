#include "brvUtils/os/Error.h"

#include <cerrno>
#include <system_error>

namespace brvUtils::os {

std::string lastSystemErrorText()
{
    return std::generic_category().message(errno);
}

} // namespace brvUtils::os
