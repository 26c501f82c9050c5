#pragma once

#include "EngineModel.h"

#include <brvUtils/platform/PlugInLoader.h>

#include <memory>
#include <string>

namespace suite {

/// An engine of a plug-in in the folder "engine" beside the library, or else below the current folder. One thread at a time.
class Engine
{
public:
    /// \param plugIn its name without an extension, such as "petrol", UTF-8.
    /// \throw brvUtils::PluginError when there is none that can be loaded, or it is none for this program, or makes no
    ///        engine; the text tells which.
    explicit Engine(const std::string& plugIn);

    /// As long as this object.
    const EngineModel& model() const { return *model_; }

private:
    PlugInLoader library_; ///< Goes last: the model's code is in it.
    std::unique_ptr<EngineModel, EngineSymbols::Destroy*> model_{nullptr, nullptr};
};

} // namespace suite
