#include "brvUtils/platform/PlugInLoader.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileNames.h"
#include "brvUtils/startup/ModulePaths.h"

#include <stdexcept>

PlugInLoader::PlugInLoader(const std::string& name, const std::string& extension, const std::string& subdirectory)
    : name_(name), extension_(extension), subdirectory_(subdirectory)
{
    const std::string file = name_ + "." + extension_;
    std::string pluginFolder;
    std::string libraryFolder;
    if (!getDirectories(pluginFolder, libraryFolder, subdirectory_)) {
        lastError = "Unable to find plug in directory, so unable to load plug in " + file + ". Error " + systemError();
        throw brvUtils::PluginError(lastError);
    }
    if (load(pluginFolder + file)) {
        return;
    }
    // One that is there but lacks something is not to be told as one that is missing elsewhere.
    const std::string besideLibrary = lastError;
    if (!load(subdirectory_ + "/" + file)) {
        lastError = besideLibrary + "; " + lastError;
        throw std::runtime_error(lastError);
    }
}

PlugInLoader::~PlugInLoader() = default;

bool PlugInLoader::getDirectories(std::string& pluginFolder, std::string& libraryFolder, const std::string& subdirectory)
{
    const std::string library = brvUtils::getBrvUtilsPath();
    if (library.empty()) {
        return false;
    }
    libraryFolder = brvUtils::getPath(library);
    pluginFolder = libraryFolder + "\\" + subdirectory + "\\";
    return true;
}
