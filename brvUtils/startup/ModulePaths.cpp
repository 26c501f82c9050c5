#include "brvUtils/startup/ModulePaths.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/Process.h"

#include <brv/Path.h>

#include <cstdlib>

namespace brvUtils {

const char* getBasePath()
{
    return std::getenv("STUDIO_PATH");
}

const char* getComputePath()
{
    return std::getenv("COMPUTE_PATH");
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
