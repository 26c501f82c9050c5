#include "../Variables.h"

#include <Utilities/Encoding.h>

#include <cstdlib>
#include <filesystem>

namespace suite {

void setVariable(const std::string& name, const std::string& value)
{
    _wputenv(std::filesystem::u8path(name + "=" + value).c_str());
}

std::optional<std::string> getVariable(const std::string& name)
{
    const wchar_t* const value = _wgetenv(Utilities::Encoding::Transcode(name).c_str());
    return value != nullptr ? std::optional<std::string>(Utilities::Encoding::Transcode(std::wstring(value))) : std::nullopt;
}

const std::vector<std::string> temporaryVariables = {"TEMP"};
const char* const temporaryFolder = "C:\\Temp";

} // namespace suite
