#include "brvUtils/startup/ModulePaths.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/os/Process.h"
#include "brvUtils/startup/internal/SharedText.h"

#include <brv/Path.h>

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
