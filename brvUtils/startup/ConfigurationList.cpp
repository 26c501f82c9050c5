#include "brvUtils/startup/EnvConfig.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileSystem.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/startup/GenericPath.h"
#include "brvUtils/startup/internal/Configurations.h"
#include "brvUtils/startup/internal/ListFiles.h"

#include <StudioVersion/Version.h>
#include <Utilities/ConfigFile.h>
#include <Utilities/System.h>
#include <brv/Path.h>

#include <boost/regex.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <locale>
#include <mutex>
#include <sstream>

// The list files: reading them, dating what they declare, and changing them.

namespace brvUtils {

namespace {

const char* const ruler = "========================================";

std::ifstream openText(const std::string& path)
{
    return std::ifstream(std::filesystem::u8path(brv::FixPathSeparators(path)));
}

bool readLine(std::istream& text, std::string& line)
{
    if (!std::getline(text, line)) {
        return false;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return true;
}

void declare(const std::string& name, const std::string& folder)
{
    EnvConfig::ConfigurationInfos& infos = state().declared[name];
    infos.path = folder;
    EnvConfig::getConfigVersion(folder, infos.version);
}

void readListFile(const std::string& file, bool isMain)
{
    Utilities::ConfigFile list(file);
    std::cout << file << std::endl;
    forEachDeclaration(list, Configurations::askHostName(), [](const std::string&, const std::string& name, const std::string& value) {
        const std::string folder = withoutEndSeparators(resolveGenericPath(value));
        if (fileOrFolderExist(folder, utf8)) {
            declare(name, folder);
        }
    });
    if (isMain && state().declared.empty()) {
        std::cout << ruler << "\nNo configuration declared in the common part in configurations.cfg.\n" << std::endl << ruler << std::endl;
        throw ConfigurationError("No configuration in configurations.cfg !");
    }
}

/// What old configurations mention of the folder that they were made with.
bool dateByMention(const std::string& line, EnvConfig::Version& out)
{
    using Version = EnvConfig::Version;
    static const boost::regex first(R"(\$\{STUDIO_PATH\}[/\\]*(Studio_1|Velorastudio_1)\.0)");
    static const boost::regex second(R"(\$\{STUDIO_PATH\}[/\\]*(Studio_1|Velorastudio_1)\.1)");
    static const boost::regex present(R"(\$\{STUDIO_PATH\}[/\\]*Studio_dev)");
    if (boost::regex_search(line, first)) {
        out = Version(1, 0);
    } else if (boost::regex_search(line, second)) {
        out = Version(1, 1);
    } else if (boost::regex_search(line, present)) {
        out = Version(getMajorVersion(), getMinorVersion());
    } else {
        return false;
    }
    return true;
}

void removeFrom(const std::string& file, const std::string& name)
{
    Utilities::ConfigFile list(file);
    if (list.isLoaded()) {
        list.deleteEntry(name, "Common");
        if (!list.save(file)) {
            reportUnsaved(file);
        }
    }
}

[[noreturn]] void reject(const std::string& problem, const char* variable)
{
    std::ostringstream text;
    text << problem << std::endl << "Check for " << variable << " validity.";
    std::cout << text.str();
    std::cout.flush();
    throw ConfigurationError(text.str());
}

void createSpace(const Overlay& overlay)
{
    const auto folder = os::environmentVariable(overlay.variable);
    if (!folder) {
        return;
    }
    const std::string path = *folder + "/configurations.cfg";
    // Kept for callers: "local" also for a compute node.
    if (!Utilities::ConfigFile::createEmptyConfigFile(path)) {
        reject("Cannot create empty local configurations.cfg file.", overlay.variable);
    }
    if (!Utilities::ConfigFile(path).isLoaded()) {
        reject("Cannot open local configurations.cfg file.", overlay.variable);
    }
    const std::string space = *folder + "/Velorastudio_" + EnvConfig::Version(getMajorVersion(), getMinorVersion()).toString();
    recursiveMkDir(Utilities::Encoding::Transcode(space + "/config").c_str());
    recursiveMkDir(Utilities::Encoding::Transcode(space + "/data").c_str());
}

} // namespace

void EnvConfig::loadConfigurationsList()
{
    if (state().mainFile.empty()) {
        const auto studio = os::environmentVariable("STUDIO_PATH");
        if (!studio) {
            std::cout << ruler << "\nNo STUDIO_PATH environment variable !\nPress ENTER to stop the MODULE" << std::endl;
            std::cin.get();
            throw ConfigurationError("No STUDIO_PATH environment variable !");
        }
        state().mainFile.set(*studio + "/configurations.cfg");
    }
    const std::string& file = state().mainFile.get();
    if (!fileExist(file, utf8)) {
        std::cout << ruler << "\nNo configurations.cfg file\nCheck for STUDIO_PATH validity, and the [" << file << "] file\n" << ruler << std::endl;
        throw ConfigurationError("No configurations.cfg file !");
    }
    readListFile(file, true);
    const Overlay compute = computeOverlay();
    const Overlay local = localOverlay();
    if (compute.isThere()) {
        readListFile(compute.find(), false);
        // Kept for callers: the name of the other file.
        std::cout << "COMPUTE_PATH found, Local configuration.cfg file is used: " << local.find() << std::endl;
    } else if (local.isThere()) {
        readListFile(local.find(), false);
        std::cout << "LOCAL_STUDIO_PATH found, Local configuration.cfg file is used: " << state().localFile.get() << std::endl;
    }
}

void EnvConfig::setVeloraConfigFilePath(const std::string& path)
{
    const Guard guard(ourCS);
    std::string file;
    Utilities::System::ExpandLocalEnvironmentVariables(path, file, Utilities::System::DaemonVariableMatchingPattern, {});
    state().mainFile.set(file);
    loadConfigurationsList();
    setFirstConfig();
}

bool EnvConfig::getConfigVersion(const std::string& folder, Version& out)
{
    out = Version();
    std::string line;
    if (fileExist(folder + "/version.cfg", utf8)) {
        std::ifstream text = openText(folder + "/version.cfg");
        while (readLine(text, line) && line.empty()) {
        }
        std::istringstream numbers(line);
        numbers.imbue(std::locale::classic());
        char separator = 0;
        numbers >> out.major >> separator >> out.minor;
        return true;
    }
    if (fileExist(folder + "/Process.cfg", utf8)) {
        std::ifstream text = openText(folder + "/Process.cfg");
        while (readLine(text, line)) {
            if (dateByMention(line, out)) {
                return true;
            }
        }
    }
    return false;
}

void EnvConfig::addConfig(const std::string& name, const std::string& path)
{
    const Guard guard(ourCS);
    declare(name, withoutEndSeparators(resolveGenericPath(path)));
    const Overlay compute = computeOverlay();
    const Overlay local = localOverlay();
    const std::string file = compute.isUsed() ? compute.find() : local.isUsed() ? local.find() : state().mainFile.get();
    Utilities::ConfigFile list(file);
    if (!list.modifyEntry(name, "Common", path) || !list.save(file)) {
        reportUnsaved(file);
    }
}

void EnvConfig::deleteConfig(const std::string& name, const std::string& nextName)
{
    const Guard guard(ourCS);
    if (nextName.empty()) {
        setFirstConfig();
    } else {
        setConfigInternal(nextName, false);
    }
    state().declared.erase(name);
    if (isUsingComputeConfig()) {
        removeFrom(state().computeFile.get(), name);
    } else if (isUsingLocalConfig()) {
        removeFrom(state().localFile.get(), name);
    }
    removeFrom(state().mainFile.get(), name);
}

void EnvConfig::createLocalConfigurationSpace()
{
    createSpace(localOverlay());
}

void EnvConfig::createComputeConfigurationSpace()
{
    createSpace(computeOverlay());
}

} // namespace brvUtils
