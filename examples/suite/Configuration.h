#pragma once

#include <brvUtils/startup/ArgParser.h>

#include <filesystem>
#include <string>

/// \file
/// What a module of this suite is told by its configuration. One thread at a time.

namespace suite {

/// Selects the configuration that the command line asks for: `-c` names it, `-cfg` names another list file; by default the
/// one that the suite prefers. Where there is no `STUDIO_PATH` it is set, to the folder of that list file or else to
/// "suite" beside the program.
/// \throw brvUtils::ConfigurationError when that is not possible; the text names the list file.
void selectConfiguration(const brvUtils::ArgParser& arguments);

/// Gives this run a name such as "run-21_11_2026-21h01m06s" in the variable `SUITE_RUN`, with the instance's name in front,
/// unless it has one. Modules that this process starts have the same, those that are started again, too.
void nameRun();

/// What "Process.xfg" of the selected configuration says in the section of a module.
/// \throw brvUtils::ConfigurationError when it says nothing.
std::string moduleSetting(const std::string& module, const std::string& name);

/// A file in the folders of a keyword. \throw brvUtils::FileError when none of them holds it.
std::filesystem::path findDataFile(const std::string& keyword, const std::string& file);

} // namespace suite
