#include "brvUtils/os/ProgramOutput.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace brvUtils::os {

struct OwnOutput
{
    int descriptor = -1;
    unsigned codePage = 0; ///< Of the console before; 0 when the output is none.
};

namespace {

constexpr int standardOutput = 1;
constexpr int standardError = 2;

HANDLE handleOf(const OwnOutput* output)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(output->descriptor));
}

bool isConsole(const OwnOutput* output)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(output), &mode) != 0;
}

} // namespace

OwnOutput* takeStandardOutput(bool othersToErrorStream, ErrorCode& error) noexcept
{
    std::fflush(stdout);
    const int own = _dup(standardOutput);
    const int others = othersToErrorStream ? _dup(standardError) : _open("NUL", _O_WRONLY);
    OwnOutput* const output = new (std::nothrow) OwnOutput{own};
    error = error::none;
    if (own < 0 || others < 0 || output == nullptr || _dup2(others, standardOutput) != 0) {
        error = output == nullptr ? error::notEnoughMemory : errno == EMFILE ? error::tooManyOpenFiles : error::invalidHandle;
        delete output;
    }
    if (others >= 0) {
        _close(others);
    }
    if (error != error::none) {
        if (own >= 0) {
            _close(own);
        }
        return nullptr;
    }
    if (isConsole(output)) {
        output->codePage = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
    }
    return output;
}

void giveStandardOutputBack(OwnOutput* output) noexcept
{
    if (output != nullptr) {
        std::fflush(stdout);
        if (output->codePage != 0) {
            SetConsoleOutputCP(output->codePage);
        }
        _dup2(output->descriptor, standardOutput);
        _close(output->descriptor);
        delete output;
    }
}

ErrorCode writeOwnOutput(OwnOutput* output, std::string_view text) noexcept
{
    constexpr std::size_t piece = 1 << 15; // consoles take no more at once
    while (!text.empty()) {
        DWORD written = 0;
        if (WriteFile(handleOf(output), text.data(), static_cast<DWORD>(std::min(text.size(), piece)), &written, nullptr) == 0) {
            return GetLastError();
        }
        text.remove_prefix(written);
    }
    return error::none;
}

int ownOutputWidth(const OwnOutput* output) noexcept
{
    CONSOLE_SCREEN_BUFFER_INFO info;
    const bool known = isConsole(output) && GetConsoleScreenBufferInfo(handleOf(output), &info) != 0;
    return known ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
}

} // namespace brvUtils::os
