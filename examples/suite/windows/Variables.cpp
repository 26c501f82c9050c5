#include "../Variables.h"

#include <cstdlib>
#include <filesystem>

namespace suite {

void setVariable(const std::string& name, const std::string& value)
{
    _wputenv(std::filesystem::u8path(name + "=" + value).c_str());
}

} // namespace suite
