#include "Configuration.h"

#include "Variables.h"

#include <Utilities/ConfigFile.h>
#include <brvUtils/core/Errors.h>
#include <brvUtils/core/FileNames.h>
#include <brvUtils/startup/EnvConfig.h>
#include <brvUtils/startup/GenericPath.h>
#include <brvUtils/startup/InstanceKey.h>
#include <brvUtils/startup/ModulePaths.h>

#include <cstdlib>
#include <ctime>

namespace suite {

using brvUtils::EnvConfig;

namespace {

/// A tree that was moved works from where it is, as does the one beside the program.
void provideStudioPath(const std::string& listFile)
{
    if (brvUtils::getBasePath() != nullptr) {
        return;
    }
    if (listFile.empty()) {
        setVariable("STUDIO_PATH", brvUtils::GetModulePath() + "/suite");
    } else {
        const auto file = std::filesystem::u8path(brvUtils::resolveGenericPath(listFile));
        setVariable("STUDIO_PATH", std::filesystem::absolute(file).parent_path().u8string());
    }
}

} // namespace

void selectConfiguration(const brvUtils::ArgParser& arguments)
{
    const std::string& listFile = arguments.getConfigFile();
    provideStudioPath(listFile);
    try {
        if (!listFile.empty()) {
            EnvConfig::setVeloraConfigFilePath(listFile);
        }
        EnvConfig::setConfig(arguments.getConfigName(), false);
    } catch (const brvUtils::ConfigurationError& fault) {
        throw brvUtils::ConfigurationError(std::string(fault.what()) + " (list file " + EnvConfig::getConfigurationsFilePath() + ")");
    }
}

void nameRun()
{
    if (std::getenv("SUITE_RUN") == nullptr) {
        setVariable("SUITE_RUN", brvUtils::buildRecordBaseName(brvUtils::buildKeyWithInstance("run"), std::time(nullptr)));
    }
}

std::string moduleSetting(const std::string& module, const std::string& name)
{
    const std::string path = EnvConfig::getConfigFilePath("Process.xfg", false);
    Utilities::ConfigFile settings(path);
    settings.setSection(module);
    std::string value;
    if (!settings.readString(name, value) || value.empty()) {
        throw brvUtils::ConfigurationError(path + " has no \"" + name + "\" in the section \"" + module + "\"");
    }
    return value;
}

std::filesystem::path findDataFile(const std::string& keyword, const std::string& file)
{
    const std::string path = EnvConfig::findInPath(keyword, file);
    if (path.empty()) {
        throw brvUtils::FileError(file + " is in none of the folders of \"" + keyword + "\"; -explain " + keyword + " tells which these are");
    }
    return std::filesystem::u8path(path);
}

} // namespace suite
