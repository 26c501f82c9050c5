#pragma once

#include "brvUtils/startup/EnvConfig.h"
#include "brvUtils/startup/internal/SharedText.h"

#include <Utilities/ConfigFile.h>
#include <Utilities/Encoding.h>

#include <map>
#include <mutex>
#include <string>

namespace brvUtils {

/// The state behind EnvConfig, guarded by EnvConfig::ourCS.
struct Configurations
{
    /// That of the process. Never destroyed: objects of static lifetime may look for files until the end.
    static Configurations& instance();

    std::map<std::string, EnvConfig::ConfigurationInfos> declared; ///< By name. Empty: the list is not loaded.
    SharedText mainFile; ///< The list files.
    SharedText localFile;
    SharedText computeFile;
    SharedText current; ///< Name of the configuration that is selected.
    Utilities::ConfigFile dataFile; ///< Its "datafile.cfg"; the section is that of the computer.
    std::string hostName; ///< Once matchComputer has asked for it.

    /// Asks the system for the name of this computer.
    static std::string askHostName();
};

inline Configurations& state()
{
    return Configurations::instance();
}

using Guard = std::lock_guard<Utilities::CriticalSectionWrapper>;

constexpr auto utf8 = Utilities::Encoding::Mode::Utf8;

/// The path without separators at its end, but for a root's: some systems find no folder whose name ends with one.
std::string withoutEndSeparators(std::string path);

/// What a change that lives on in this process alone is answered with.
void reportUnsaved(const std::string& file);

} // namespace brvUtils
