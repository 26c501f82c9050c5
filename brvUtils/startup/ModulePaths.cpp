#include "brvUtils/startup/ModulePaths.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/os/Process.h"
#include "brvUtils/startup/internal/SharedText.h"

#include <brv/Path.h>

#include <cstddef>
#include <mutex>

namespace brvUtils {

namespace {

/// The value in the process's code page, or null. `kept` holds it.
const char* valueOf(const char* name, SharedText& kept)
{
    const auto value = os::environmentVariable(name);
    return value ? kept.set(os::localFromWide(os::wideFromUtf8(*value))).c_str() : nullptr;
}

} // namespace

const char* getBasePath()
{
    static auto* const kept = new SharedText; // never destroyed: callers keep the text
    return valueOf("STUDIO_PATH", *kept);
}

const char* getComputePath()
{
    static auto* const kept = new SharedText;
    return valueOf("COMPUTE_PATH", *kept);
}

std::string GetModuleFilePath()
{
    return os::executablePath();
}

std::string GetModulePath()
{
    return getPath(GetModuleFilePath());
}

std::string getBrvUtilsPath()
{
    constexpr std::size_t buffer = 2048; // kept for callers: what fills it counts as cut
    static const char inThisLibrary = 0;
    static std::mutex mutex;
    static auto* const path = new std::string; // never destroyed: plug-ins may be loaded by what ends last
    const std::lock_guard lock(mutex);
    if (path->empty()) {
        *path = os::libraryFile(&inThisLibrary);
    }
    return path->size() < buffer ? *path : std::string();
}

std::string getBaseInstallPath()
{
    const std::string folder = brv::NormalizePath(GetModulePath());
    const std::string folded = tolower(folder);
    for (const char* marker : { "/bin/win32", "/bin/x64" }) {
        const std::size_t position = folded.rfind(marker);
        if (position != std::string::npos) {
            return folder.substr(0, position);
        }
    }
    return {};
}

} // namespace brvUtils
