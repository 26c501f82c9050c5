#pragma once

#include "Command.h"

#include <brvUtils/startup/ConfigurationReport.h>

#include <string>
#include <vector>

namespace brvTool {

/// Which lists and which configuration commands look at.
struct ConfigChoice
{
    std::string list; ///< Empty: that of STUDIO_PATH.
    std::string configuration; ///< Empty: the one that modules take by default.
};

/// Adds "--list FILE".
void addListOption(CLI::App& command, ConfigChoice& choice);
/// Adds "-c,--configuration NAME".
void addConfigurationOption(CLI::App& command, ConfigChoice& choice);

/// The lists and what they declare. \throw Fault when there is no list; modules would ask the user to press a key.
brvUtils::ListReport declarations(const ConfigChoice& choice);

/// The names that are declared and count, sorted.
std::vector<std::string> declaredNames(const brvUtils::ListReport& report);

/// Selects the configuration for the rest of the program, as a module does, and gives its name. \throw Fault when it cannot
/// be selected.
std::string select(const ConfigChoice& choice);

} // namespace brvTool
