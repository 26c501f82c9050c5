#include "Engine.h"

#include <brvUtils/core/Errors.h>

#include <exception>

namespace suite {

namespace {

[[noreturn]] void refuse(const std::string& plugIn, const std::string& reason)
{
    throw brvUtils::PluginError("no engine " + plugIn + ": " + reason);
}

PlugInLoader load(const std::string& plugIn)
{
    if (plugIn.empty() || plugIn.find_first_of("/\\") != plugIn.npos) {
        refuse(plugIn, "this is no name of a plug-in");
    }
    try {
        return PlugInLoader(plugIn, SUITE_PLUG_IN_EXTENSION, "engine");
    } catch (const std::exception& fault) {
        refuse(plugIn, fault.what());
    }
}

template <typename Function>
Function* find(const PlugInLoader& library, const std::string& plugIn, const char* symbol)
{
    const auto function = reinterpret_cast<Function*>(library.getSymbol(symbol));
    if (function == nullptr) {
        refuse(plugIn, library.getLastError());
    }
    return function;
}

/// Null when it throws, with the reason: what was thrown may be of a class of the plug-in, and does not outlive this.
EngineModel* makeOrTell(EngineSymbols::Make* make, std::string& reason)
{
    try {
        reason = "it makes none";
        return make();
    } catch (const std::exception& fault) {
        reason = fault.what();
    } catch (...) {
        reason = "it throws what is no error";
    }
    return nullptr;
}

} // namespace

Engine::Engine(const std::string& plugIn)
    : library_(load(plugIn))
{
    const std::uint32_t version = find<EngineSymbols::Version>(library_, plugIn, EngineSymbols::version)();
    if (version != engineInterface) {
        refuse(plugIn, "its interface is " + std::to_string(version) + ", that of this program " + std::to_string(engineInterface));
    }
    const auto make = find<EngineSymbols::Make>(library_, plugIn, EngineSymbols::make);
    const auto destroy = find<EngineSymbols::Destroy>(library_, plugIn, EngineSymbols::destroy);
    std::string reason;
    model_ = {makeOrTell(make, reason), destroy};
    if (model_ == nullptr) {
        refuse(plugIn, reason);
    }
}

} // namespace suite
