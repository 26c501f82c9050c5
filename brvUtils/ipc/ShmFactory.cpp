#include "brvUtils/ipc/ShmFactory.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/ShmVmic.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "brvUtils/startup/EnvConfig.h"

#include <Utilities/ConfigFile.h>

#include <optional>
#include <string>

namespace brvUtils {

namespace {

/// The segment that the configuration wants on a card, null when the card is not to be had; nothing when it does not.
std::optional<IShm*> newReflectiveShm(char const* name, size_t size, short version)
{
    try {
        const std::string path = EnvConfig::getConfigFilePath("shm.cfg", true);
        Utilities::ConfigFile file;
        if (path.empty() || !file.load(path)) {
            return std::nullopt;
        }
        file.setSection(std::string(name) + (version > 0 ? "_" + std::to_string(version) : ""));
        std::string type;
        if (!file.readString("Type", type) || type != "VMIC") {
            return std::nullopt;
        }
        return ShmVmic::New(name, size, version, file);
    } catch (const ConfigurationError&) {
        return std::nullopt; // no configuration, no choice
    }
}

} // namespace

IShm* newShm(char const* name, size_t size, short version, bool withInstance)
{
    const std::optional<IShm*> shm = newReflectiveShm(name, size, version);
    return shm ? *shm : new ShmWin32(name, size, version, withInstance);
}

} // namespace brvUtils
