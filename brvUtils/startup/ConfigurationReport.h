#pragma once

#include "brvUtils/startup/EnvConfig.h"

#include <string>
#include <utility>
#include <vector>

/// \file
/// What EnvConfig goes by, for people who look for a mistake: which files, which entries, where each value comes from. Looking
/// selects nothing, exports nothing and prints nothing. Any thread may call these; narrow text is UTF-8.

namespace brvUtils {

/// How a generic path (resolveGenericPath) became a path.
struct PathReport
{
    std::string generic; ///< As it stands in the file.
    std::string path; ///< The same as `generic` when that cannot be resolved.
    std::string fault; ///< Why it cannot, such as "there is no variable DATA"; else empty.
    std::vector<std::pair<std::string, std::string>> variables; ///< That were read, with their values, in order.
    bool exists = false; ///< There is such a file or folder.
};

/// An entry of a file that EnvConfig reads.
struct EntryReport
{
    std::string file; ///< Its full name.
    std::string section; ///< "Common", or the name of this computer.
    std::string name; ///< What stands before the "=".
    std::string value; ///< What stands behind it, unresolved.
    std::vector<PathReport> paths; ///< What the value lists; one where it is no list.
    bool counts = true; ///< False when another entry of that name does, or the entry is passed over.
};

/// A file that lists configurations, or would if it existed.
struct ListFileReport
{
    std::string file; ///< Its full name.
    std::string variable; ///< That names its folder; empty for a file that was named itself.
    bool exists = false; ///< There is such a file.
    bool isRead = false; ///< At most one is laid over the main one.
};

/// All lists, and what they declare.
struct ListReport
{
    std::string computer; ///< The section that counts beside "Common".
    std::vector<ListFileReport> files; ///< Those that variables name; the main one first.
    std::vector<EntryReport> declarations; ///< Of the files that are read; those that exist later replace those before.
};

/// Looks at the lists as EnvConfig would read them now. \param listFile the main list as for
/// EnvConfig::setVeloraConfigFilePath; empty for the one of this process, or of `STUDIO_PATH`. No files without either.
BRVUTILS_API ListReport reportConfigurations(const std::string& listFile = {});

/// What the files of a configuration say.
struct ConfigurationReport
{
    std::string folder; ///< As it was asked for.
    bool hasProcessFile = false; ///< "Process.xfg" is there.
    bool hasDataFile = false; ///< "datafile.cfg" is there and can be read. Both are needed to select the configuration.
    EnvConfig::Version version; ///< Of the suite that it is for; not known when no file tells.
    std::string versionFile; ///< The file that tells the version; empty when none does.
    std::vector<EntryReport> variables; ///< Of "envvar.cfg", in order.
    std::vector<EntryReport> keywords; ///< Of "datafile.cfg": those of "Common", then those of this computer.
};

/// Looks at the folder of a configuration. References are resolved as if its variables were exported.
BRVUTILS_API ConfigurationReport reportConfiguration(const std::string& folder);

/// How a keyword gets its folders in the configuration that is selected.
struct KeywordReport
{
    std::string keyword; ///< As it was asked for.
    std::string configuration; ///< Empty when none is selected, and all below is.
    std::string file; ///< "datafile.cfg", with its folder.
    std::string section; ///< Of the entry; empty when there is none, and all below is.
    std::string entry; ///< The longest that the keyword begins with, without separators.
    std::string value; ///< Of that entry, unresolved.
    std::string rest; ///< Of the keyword, behind the entry: it follows each folder.
    std::vector<PathReport> folders; ///< That the value lists, each with the rest behind it.
    std::string first; ///< As EnvConfig::getFirstPath answers.
};

/// The same as EnvConfig::explain, for programs.
BRVUTILS_API KeywordReport reportKeyword(const std::string& keyword);

/// Resolves one generic path.
BRVUTILS_API PathReport reportPath(const std::string& generic);

} // namespace brvUtils
