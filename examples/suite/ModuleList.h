#pragma once

#include "SupervisedModule.h"

#include <string>
#include <vector>

namespace suite {

/// The modules of a list such as "display -silence 10, RFM2G_NODE=1 vehicle": each the name of a program in a folder, with
/// variables of its environment in front and its arguments behind it, all separated by blanks.
/// \param list UTF-8. \param folder of the programs, UTF-8. \param common arguments that each of them gets before its own.
/// \throw brvUtils::ConfigurationError when there is none, a name is a path, a program is missing, two have the same name, or
///        what stands in front of a module is no variable.
std::vector<ModuleCommand> readModuleList(
    const std::string& list, const std::string& folder, const std::vector<std::string>& common);

} // namespace suite
