#pragma once

#include <Utilities/DLLImport.h>

#include <string>

#include "brvUtils/export.h"

/// A plug-in: a library that lies in a folder beside this one and is found by its name. Loaded from construction to
/// destruction; copies share it. Threads and symbols as Utilities::DLLImport has them.
class BRVUTILS_API PlugInLoader : public Utilities::DLLImport
{
public:
    /// Loads the file `name.extension` from the folder `subdirectory` beside this library, or else from that folder below the
    /// current one, or wherever the system finds that path. All UTF-8.
    ///
    /// \throw brvUtils::PluginError when this library's own folder cannot be told.
    /// \throw std::runtime_error when neither can be loaded; its text is the last failure of the system's loader.
    PlugInLoader(const std::string& name, const std::string& extension, const std::string& subdirectory);

    PlugInLoader(const PlugInLoader&) = default;
    PlugInLoader& operator=(const PlugInLoader&) = default;
    ~PlugInLoader() override;

protected:
    /// \param pluginFolder set to the folder of plug-ins, with a separator at its end.
    /// \param libraryFolder set to the folder of this library, without one.
    /// \return false, with both as they were, when the system does not tell where this library lies.
    static bool getDirectories(std::string& pluginFolder, std::string& libraryFolder, const std::string& subdirectory);

private:
    std::string name_;
    std::string extension_;
    std::string subdirectory_;
};
