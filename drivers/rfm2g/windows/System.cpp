#include "rfm2g/System.h"

#include "rfm2g/RingPlace.h"

#include <filesystem>
#include <vector>
#include <windows.h>

namespace softwareCard {

const char* const devicePrefix = "\\\\.\\rfm2g";

std::uint32_t thisProcess()
{
    return GetCurrentProcessId();
}

std::string variable(const char* name)
{
    const std::wstring wideName(name, name + std::char_traits<char>::length(name));
    std::vector<wchar_t> value(64);
    for (;;) {
        const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length < value.size()) {
            return std::filesystem::path(std::wstring(value.data(), length)).u8string();
        }
        value.resize(length);
    }
}

std::string defaultFolder()
{
    std::error_code error;
    return (std::filesystem::temp_directory_path(error) / "rfm2g").u8string();
}

std::string makeDefaultFolder()
{
    std::error_code error;
    const std::string folder = defaultFolder();
    std::filesystem::create_directories(std::filesystem::u8path(folder), error);
    return error ? folder + ": " + error.message() : "";
}

std::thread startThread(std::function<void()> work)
{
    return std::thread(std::move(work));
}

void stayLoaded()
{
    HMODULE own = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN, reinterpret_cast<LPCWSTR>(&stayLoaded), &own);
}

} // namespace softwareCard
