#pragma once

#include <Utilities/DLLImport.h>

#include <string>

#include "brvUtils/export.h"

/// A plug-in: a library that lies in a folder beside this one and is found by its name. Loaded from construction to
/// destruction; copies share it. Threads, symbols and what keeps a library loaded are as Utilities::DLLImport has them.
class BRVUTILS_API PlugInLoader : public Utilities::DLLImport
{
public:
    /// Loads the file `name.extension` from the folder `subdirectory` beside this library, or else from that folder below the
    /// current one, or wherever the system finds that path. All UTF-8; in `subdirectory`, `/` and `\` both separate folders.
    ///
    /// A plug-in must not throw as it is loaded: see Utilities::DLLImport::load.
    ///
    /// \throw brvUtils::PluginError when this library's own folder cannot be told.
    /// \throw std::runtime_error when neither can be loaded; its text is what the system's loader has to say of both.
    PlugInLoader(const std::string& name, const std::string& extension, const std::string& subdirectory);

    PlugInLoader(const PlugInLoader&) = default; ///< Shares the plug-in.
    PlugInLoader& operator=(const PlugInLoader&) = default; ///< Lets go of its own plug-in and shares the other.
    ~PlugInLoader() override; ///< Unloads the plug-in, unless a copy or somebody else has it.

protected:
    /// \param pluginFolder set to the folder of plug-ins, with a `\` before and behind `subdirectory` on every system, as
    ///        functions of this library take it.
    /// \param libraryFolder set to the folder of this library, without a separator at its end.
    /// \param subdirectory as for the constructor.
    /// \return false, with both as they were, when the system does not tell where this library lies.
    static bool getDirectories(std::string& pluginFolder, std::string& libraryFolder, const std::string& subdirectory);

private:
    std::string name_;
    std::string extension_;
    std::string subdirectory_;
};
