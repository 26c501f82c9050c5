#include "../Variables.h"

#include <cstdlib>

namespace suite {

void setVariable(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1);
}

} // namespace suite
