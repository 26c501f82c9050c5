#include "brvUtils/startup/EnvConfig.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileSystem.h"
#include "brvUtils/core/Network.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/os/Network.h"
#include "brvUtils/startup/GenericPath.h"
#include "brvUtils/startup/internal/Configurations.h"

#include <StudioVersion/Version.h>

#include <iostream>

namespace brvUtils {

Utilities::CriticalSectionWrapper EnvConfig::ourCS;

namespace {

std::string existingFile(const std::string& path, bool mustExist)
{
    return mustExist && !fileExist(path, utf8) ? std::string() : path;
}

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

} // namespace

Configurations& Configurations::instance()
{
    static auto* const configurations = new Configurations;
    return *configurations;
}

std::string Configurations::askHostName()
{
    const bool started = initNetworkSystem();
    const std::string name = os::hostName();
    if (started) {
        releaseNetworkSystem();
    }
    return name;
}

std::string withoutEndSeparators(std::string path)
{
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\') && path[path.size() - 2] != ':') {
        path.pop_back();
    }
    return path;
}

void reportUnsaved(const std::string& file)
{
    std::cerr << "Cannot save \"" + file + "\": the change is known to this process alone.\n" << std::flush;
}

std::string EnvConfig::Version::toString() const
{
    return major != -1 && minor != -1 ? std::to_string(major) + "." + std::to_string(minor) : "?";
}

EnvConfig::EnvConfig()
{
    const Guard guard(ourCS);
    if (state().declared.empty()) {
        loadConfigurationsList();
        setFirstConfig();
    }
}

EnvConfig::EnvConfig(const std::string& name)
{
    const Guard guard(ourCS);
    ensureList();
    if (name.empty()) {
        setFirstConfig();
    } else {
        setConfigInternal(name, false);
    }
}

void EnvConfig::ensureList()
{
    if (state().declared.empty()) {
        loadConfigurationsList();
    }
}

bool EnvConfig::setFirstConfig()
{
    return !state().declared.empty() && setConfigInternal(state().declared.begin()->first, false);
}

bool EnvConfig::setConfig(const std::string& name, bool force)
{
    const Guard guard(ourCS);
    ensureList();
    if (name.empty()) {
        if (!setDefaultConfig(force)) {
            throw ConfigurationError("Unable to find a valid configuration in configurations.cfg !");
        }
    } else if (!setConfigInternal(name, force)) {
        throw ConfigurationError("Invalid configuration: " + name);
    }
    return true;
}

bool EnvConfig::setDefaultConfig(bool force)
{
    const Version suite(getMajorVersion(), getMinorVersion());
    const auto anyOf = [&](auto isWanted) {
        for (const auto& [name, infos] : state().declared) {
            if (isWanted(name, infos) && setConfigInternal(name, force)) {
                return true;
            }
        }
        return false;
    };
    return anyOf([&](const std::string& name, const ConfigurationInfos&) { return startsWith(name, "DEFAULT_" + suite.toString()); })
        || anyOf([&](const std::string&, const ConfigurationInfos& infos) { return infos.version == suite; })
        || anyOf([&](const std::string&, const ConfigurationInfos& infos) { return infos.version != suite; });
}

bool EnvConfig::setConfigInternal(const std::string& name, bool force)
{
    const auto found = state().declared.find(name);
    if (found == state().declared.end()) {
        return false;
    }
    if (state().dataFile.isLoaded() && name == state().current.get() && !force) {
        return true;
    }
    const std::string folder = found->second.path;
    if (!fileExist(folder + "/Process.xfg", utf8) || !state().dataFile.load(resolveGenericPath(folder) + "/datafile.cfg")) {
        return false;
    }
    matchComputer();
    state().current.set(name);
    exportVariables();
    return true;
}

void EnvConfig::exportVariables()
{
    const std::string file = getConfigFilePath("envvar.cfg", true);
    if (file.empty()) {
        return;
    }
    const std::string line = "---------------------------------------------";
    std::cout << line << "\nUsing \"envvar.cfg\" with following variables" << std::endl;
    const Utilities::ConfigFile variables(file);
    for (const std::string& name : variables.getVariablesNames("Common")) {
        const std::string value = resolveGenericPath(variables[name]);
        std::cout << name << "=" << value << std::endl;
        os::setEnvironmentVariable(name, value);
    }
    std::cout << line << std::endl;
}

void EnvConfig::createFakeConfiguration(const std::string& name, const std::string& path)
{
    const Guard guard(ourCS);
    state().declared[name] = {Version(getMajorVersion(), getMinorVersion()), path};
    setConfigInternal(name, false);
}

void EnvConfig::reload()
{
    const Guard guard(ourCS);
    state().declared.clear();
    loadConfigurationsList();
}

const std::string& EnvConfig::getCurrentConfiguration()
{
    return state().current.get();
}

std::string EnvConfig::getCurrentConfigurationVersion()
{
    const Guard guard(ourCS);
    const auto found = state().declared.find(state().current.get());
    return found != state().declared.end() ? found->second.version.toString() : std::string();
}

std::vector<std::string> EnvConfig::getConfigurationsList()
{
    const Guard guard(ourCS);
    ensureList();
    std::vector<std::string> names;
    for (const auto& [name, infos] : state().declared) {
        names.push_back(name);
    }
    return names;
}

std::string EnvConfig::getConfigPath(const std::string& name)
{
    const Guard guard(ourCS);
    ensureList();
    if (!name.empty()) {
        const auto found = state().declared.find(name);
        return found != state().declared.end() ? found->second.path : std::string();
    }
    // Kept for callers: a selected configuration that the list does not hold any more comes back into it, without folder.
    return state().current.empty() ? std::string() : state().declared[state().current.get()].path;
}

std::string EnvConfig::getConfigFilePath(const std::string& file, bool mustExist)
{
    if (state().current.empty()) {
        throw ConfigurationError("No configuration loaded !");
    }
    return existingFile(getConfigPath() + "/" + file, mustExist);
}

std::string EnvConfig::getConfigFilePathForConfiguration(const std::string& name, const std::string& file, bool mustExist)
{
    return existingFile(getConfigPath(name) + "/" + file, mustExist);
}

const std::string& EnvConfig::getConfigurationsFilePath()
{
    return state().mainFile.get();
}

const std::string& EnvConfig::getLocalConfigurationsFilePath()
{
    return state().localFile.get();
}

const std::string& EnvConfig::getComputeConfigurationsFilePath()
{
    return state().computeFile.get();
}

bool EnvConfig::isUsingLocalConfig()
{
    return os::environmentVariable("LOCAL_STUDIO_PATH").has_value();
}

bool EnvConfig::isUsingComputeConfig()
{
    return os::environmentVariable("COMPUTE_PATH").has_value();
}

void EnvConfig::matchComputer()
{
    const Guard guard(ourCS);
    if (state().hostName.empty()) {
        state().hostName = Configurations::askHostName();
    }
    state().dataFile.setSection(state().hostName);
}

} // namespace brvUtils
