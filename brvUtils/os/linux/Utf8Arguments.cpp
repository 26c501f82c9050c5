#include "brvUtils/os/Utf8Arguments.h"

namespace brvUtils::os {

std::vector<std::string> utf8Arguments(int argc, char** argv)
{
    return std::vector<std::string>(argv, argv + argc);
}

} // namespace brvUtils::os
