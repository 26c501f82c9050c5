#pragma once

#include <string>
#include <vector>

#include <Utilities/CriticalSectionWrapper.h>

#include "brvUtils/export.h"

namespace brvUtils {

/// The configurations of the suite on this computer, the one that this process uses, and the folders and files that it
/// names.
///
/// A configuration is a folder. Which there are says a list file, "configurations.cfg" in the folder `STUDIO_PATH`, with
/// one more list for this computer or user laid over it: that of `COMPUTE_PATH` or else that of `LOCAL_STUDIO_PATH`. In
/// each the section "Common" holds name and folder of the configurations, and a section named after the computer adds to
/// them. The folder of a configuration holds "Process.xfg" (it is no configuration without), "datafile.cfg" (folders by
/// keyword), and where wanted "envvar.cfg" (environment variables) and "version.cfg".
///
/// A keyword such as "DATA/vehicles/cars" names folders: "datafile.cfg" has an entry for its first parts, written without
/// the separators between them ("DATA", "DATAvehicles"; the longest counts), whose value lists generic folders
/// (resolveGenericPath) separated by ";". The other parts follow each of these. Entries of the section named after the
/// computer go before those of "Common".
///
/// All is common to the process: objects of this class hold nothing. Any thread may call any function; a recursive lock
/// guards the state. Selecting a configuration changes the environment, which other code of the process must not read at
/// that moment other than through this library. Narrow text is UTF-8.
///
/// Whatever needs the list loads it first if that was not done, and may then throw ConfigurationError: "No STUDIO_PATH
/// environment variable !" (after waiting for a character from the standard input), "No configurations.cfg file !" or "No
/// configuration in configurations.cfg !". The standard output tells more.
class BRVUTILS_API EnvConfig
{
public:
    /// Version of the suite that a configuration is for.
    struct Version
    {
        Version() = default; ///< Not known.
        Version(int majorNumber, int minorNumber) : major(majorNumber), minor(minorNumber) {} ///< Each from 0, or -1.

        int major = -1; ///< -1: not known.
        int minor = -1; ///< -1: not known.

        /// "1.6", or "?" when a number is not known.
        BRVUTILS_API std::string toString() const;

        /// Whether both numbers are the same.
        bool operator==(const Version& other) const { return major == other.major && minor == other.minor; }
        /// Whether one of them is not.
        bool operator!=(const Version& other) const { return !(*this == other); }
    };

    /// What the list knows of a configuration.
    struct ConfigurationInfos
    {
        Version version; ///< As getConfigVersion finds it.
        std::string path; ///< Its folder, resolved.
    };

    /// Loads the list and selects its first configuration, unless the list is loaded already.
    EnvConfig();

    /// Selects that configuration, or for the empty name the first of the list. An unknown name selects nothing.
    explicit EnvConfig(const std::string& name);

    // Selection

    /// Selects a configuration: loads its "datafile.cfg" and exports the variables of its "envvar.cfg". The empty name
    /// selects by default: a configuration whose name starts with "DEFAULT_" and the suite's version, else one of the
    /// suite's version, else any; of each kind the first by name that can be selected.
    /// \param name as the list has it. \param force loads and exports again what is selected already.
    /// \return true. \throw ConfigurationError "Invalid configuration: <name>", when there is none of that name or its
    ///         files are missing, or "Unable to find a valid configuration in configurations.cfg !".
    static bool setConfig(const std::string& name, bool force);

    /// Adds a configuration of the suite's version to this process's list and selects it. Writes nothing.
    void createFakeConfiguration(const std::string& name, const std::string& path);

    /// Reads another list file, adds its configurations to those that are known and selects the first of all by name.
    /// Variables in the path are expanded.
    static void setVeloraConfigFilePath(const std::string& path);

    /// Reads the list anew. What is selected stays.
    static void reload();

    // Queries

    /// Name of the configuration that is selected, empty before that. The text lives as long as the process.
    static const std::string& getCurrentConfiguration();

    /// Its version as text, "?" when it is not known; empty when the list does not hold it.
    static std::string getCurrentConfigurationVersion();

    /// The names of all configurations, sorted.
    static std::vector<std::string> getConfigurationsList();

    /// Folder of a configuration, by default of the selected one; empty when there is none.
    static std::string getConfigPath(const std::string& name = {});

    /// Full name of a file of the selected configuration.
    /// \param file its name within. \param mustExist answers with the empty text when it is not a regular file.
    /// \throw ConfigurationError "No configuration loaded !".
    static std::string getConfigFilePath(const std::string& file, bool mustExist);

    /// The same for any configuration; throws nothing for an unknown one.
    static std::string getConfigFilePathForConfiguration(const std::string& name, const std::string& file, bool mustExist);

    /// Version of the configuration in that folder, from its "version.cfg" or else from what its "Process.cfg" mentions.
    /// \return false when neither tells.
    static bool getConfigVersion(const std::string& folder, Version& out);

    /// The main list file. The text lives as long as the process.
    static const std::string& getConfigurationsFilePath();
    /// The list file that `LOCAL_STUDIO_PATH` lays over it; empty while it has not been seen to exist.
    static const std::string& getLocalConfigurationsFilePath();
    /// The same for `COMPUTE_PATH`.
    static const std::string& getComputeConfigurationsFilePath();

    /// Whether the variable `LOCAL_STUDIO_PATH` is defined.
    static bool isUsingLocalConfig();
    /// Whether the variable `COMPUTE_PATH` is defined.
    static bool isUsingComputeConfig();

    // Maintenance

    /// Adds a configuration to the list, and to the list file of the compute node, else of the user, else the main one,
    /// where that is known: the list is not loaded for this. A line on the error stream tells when it cannot be saved.
    /// \param name replaces a configuration of that name. \param path as it shall stand in the file.
    static void addConfig(const std::string& name, const std::string& path);

    /// Removes a configuration from the list, from the list file laid over the main one and from the main one. Before
    /// that it selects `nextName`, or for the empty text the first of the list (kept for callers: also when it is `name`).
    static void deleteConfig(const std::string& name, const std::string& nextName);

    /// Makes an empty list file and the folders "Velorastudio_<version>/config" and "/data" in the user's space
    /// (`LOCAL_STUDIO_PATH`). Does nothing without that variable.
    /// \throw ConfigurationError when the file cannot be made or read; the standard output has the same text.
    static void createLocalConfigurationSpace();
    /// The same in the compute node's space (`COMPUTE_PATH`).
    static void createComputeConfigurationSpace();

    /// Lets the entries for this computer count in "datafile.cfg". Asks the system for the computer's name once.
    static void matchComputer();

    // Keywords and generic paths

    /// getFirstPath; for an empty result the error stream gets "Fatal error : Empty keyword= <keyword>".
    std::string operator[](const std::string& keyword);
    /// The same.
    std::wstring operator[](const std::wstring& keyword);

    /// The first folder of the keyword, resolved. Empty for an unknown keyword.
    static std::string getFirstPath(const std::string& keyword);
    /// The same.
    static std::wstring getFirstPath(const std::wstring& keyword);

    /// All folders of the keyword as they stand in the file, separated by ";". Empty for an unknown keyword.
    static std::string getFullPath(const std::string& keyword);
    /// The same.
    static std::wstring getFullPath(const std::wstring& keyword);

    /// All folders of the keyword, resolved. A single empty text for an unknown keyword.
    static std::vector<std::string> getSeparatedPath(const std::string& keyword);
    /// The same.
    static std::vector<std::wstring> getSeparatedPath(const std::wstring& keyword);

    /// The same in another configuration, which is selected for the time of the call, with all that this changes.
    /// \throw ConfigurationError when that cannot be selected.
    static std::vector<std::string> getSeparatedPathForConfiguration(const std::string& configuration, const std::string& keyword);

    /// Gives the keyword, all of it, these folders in the section "Common".
    /// \param keyword as one entry. \param folders generic or not.
    /// \param save writes them to "datafile.cfg" and reads it again, with the entries of "Common" alone from then on (kept
    ///        for callers: matchComputer lets those of the computer count again); otherwise they are known to this
    ///        process alone.
    static void setSeparatedPath(const std::string& keyword, std::vector<std::string>& folders, bool save);
    /// The same.
    static void setSeparatedPath(const std::wstring& keyword, std::vector<std::wstring>& folders, bool save);

    /// The shortest name of the file relative to one of the keyword's folders.
    static std::string getRelativePath(const std::string& keyword, const std::string& file);
    /// The same.
    static std::wstring getRelativePath(const std::wstring& keyword, const std::wstring& file);

    /// The first of the keyword's folders that holds the file, with the file's name; for an empty name, the first folder
    /// that exists. Empty when there is none, or no list is loaded. Where the variable `BRV_FIXCASE` is defined, the
    /// spelling is that on the disk, and the standard output tells where it differs.
    static std::string findInPath(const std::string& keyword, const std::string& file);
    /// The same.
    static std::wstring findInPath(const std::wstring& keyword, const std::wstring& file);

    /// A path with the root that it lies in (of `COMPUTE_PATH`, `LOCAL_STUDIO_PATH`, `STUDIO_PATH`, the first that does)
    /// replaced by a reference to that variable, whatever the case and separators; also by way of a network drive that
    /// leads to this computer.
    /// \param path absolute.
    /// \param strict answers with the empty text when the path lies in none; otherwise it comes back unchanged.
    static std::string transformInGenericPath(const std::string& path, bool strict);
    /// The same.
    static std::wstring transformInGenericPath(const std::wstring& path, bool strict);

    /// How the keyword gets its folders, in a few lines for people: the file and section, the entry that was found, what
    /// was left of the keyword, and each folder with the variables that it was resolved by.
    static std::string explain(const std::string& keyword);

    /// Guards all of the above; recursive. For callers that need several calls to belong together.
    static Utilities::CriticalSectionWrapper ourCS;

private:
    static void ensureList();
    static void loadConfigurationsList();
    static bool setConfigInternal(const std::string& name, bool force);
    static bool setFirstConfig();
    static bool setDefaultConfig(bool force);
    static void exportVariables();
};

} // namespace brvUtils
