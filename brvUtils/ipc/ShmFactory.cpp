#include "brvUtils/ipc/ShmFactory.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "brvUtils/startup/EnvConfig.h"

#include <Utilities/ConfigFile.h>

#include <string>

namespace brvUtils {

namespace {

bool isReflective(char const* name, short version)
{
    try {
        const std::string path = EnvConfig::getConfigFilePath("shm.cfg", true);
        Utilities::ConfigFile file;
        if (path.empty() || !file.load(path)) {
            return false;
        }
        file.setSection(std::string(name) + (version > 0 ? "_" + std::to_string(version) : ""));
        std::string type;
        return file.readString("Type", type) && type == "VMIC";
    } catch (const ConfigurationError&) {
        return false; // no configuration, no choice
    }
}

} // namespace

IShm* newShm(char const* name, size_t size, short version, bool withInstance)
{
    if (isReflective(name, version)) {
        return nullptr; // this library drives no reflective-memory card, so there is no view
    }
    return new ShmWin32(name, size, version, withInstance);
}

} // namespace brvUtils
