#pragma once

#include "brvUtils/core/FileSystem.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/startup/internal/Configurations.h"

#include <Utilities/ConfigFile.h>

#include <string>

namespace brvUtils {

/// A list that is laid over the main one: a variable names its folder.
struct Overlay
{
    const char* variable;
    SharedText& file;

    bool isUsed() const { return os::environmentVariable(variable).has_value(); }

    /// The file, once it has been seen to exist.
    const std::string& find() const
    {
        if (const auto folder = os::environmentVariable(variable); folder && file.empty()) {
            const std::string path = *folder + "/configurations.cfg";
            if (fileExist(path, utf8)) {
                file.set(path);
            }
        }
        return file.get();
    }

    /// Whether there is something to be laid over the main list.
    bool isThere() const { return isUsed() && fileExist(find(), utf8); }
};

inline Overlay computeOverlay()
{
    return {"COMPUTE_PATH", state().computeFile};
}

inline Overlay localOverlay()
{
    return {"LOCAL_STUDIO_PATH", state().localFile};
}

/// Calls `visit(section, name, value)` for each declaration of a list file, in the order in which later ones replace earlier
/// ones.
template <typename Visit>
void forEachDeclaration(Utilities::ConfigFile& list, const std::string& host, Visit visit)
{
    for (const std::string& section : {std::string("Common"), host}) {
        list.setSection(section);
        for (const std::string& name : list.getVariablesNames(section)) {
            visit(section, name, list[name]);
        }
    }
}

} // namespace brvUtils
