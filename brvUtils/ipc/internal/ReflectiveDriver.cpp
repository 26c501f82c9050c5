#include "brvUtils/ipc/internal/ReflectiveDriver.h"

#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/os/ReflectiveMemory.h"

#include <iostream>
#include <mutex>
#include <string>

namespace brvUtils {

namespace {

const std::string libraryName = os::reflectiveMemoryLibrary;

/// Looks functions up, up to the first that is missing.
class Exports
{
public:
    explicit Exports(os::DynamicLibrary* library)
        : library_(library)
    {
    }

    template <typename Function>
    void find(const char* name, Function*& function)
    {
        if (!complete_) {
            return;
        }
        function = reinterpret_cast<Function*>(os::librarySymbol(library_, name));
        if (function == nullptr) {
            std::cerr << "Function " + std::string(name) + " not found\n" << std::flush; // no prefix: kept for callers
            complete_ = false;
        }
    }

    bool complete() const { return complete_; }

private:
    os::DynamicLibrary* library_;
    bool complete_ = true;
};

bool findFunctions(os::DynamicLibrary* library, ReflectiveDriver& driver)
{
    Exports exports(library);
    exports.find("RFM2gOpen", driver.open);
    exports.find("RFM2gClose", driver.close);
    exports.find("RFM2gNodeID", driver.nodeId);
    exports.find("RFM2gSize", driver.size);
    exports.find("RFM2gFirst", driver.first);
    exports.find("RFM2gRead", driver.read);
    exports.find("RFM2gWrite", driver.write);
    exports.find("RFM2gEnableEvent", driver.enableEvent);
    exports.find("RFM2gSendEvent", driver.sendEvent);
    exports.find("RFM2gEnableEventCallback", driver.enableEventCallback);
    exports.find("RFM2gClearEvent", driver.clearEvent);
    exports.find("RFM2gErrorMsg", driver.errorMsg);
    exports.find("RFM2gCheckRingCont", driver.checkRingCont);
    return exports.complete();
}

bool load(ReflectiveDriver& driver)
{
    const std::string quotedName = "\"" + libraryName + "\"";
    std::cout << "[SHM VMIC] Loading library " + quotedName + "...\n" << std::flush;
    os::DynamicLibrary* const library = os::openLibrary(libraryName).opened;
    if (library == nullptr) {
        std::cerr << "[SHM VMIC] Failed to load dll " + quotedName + "\n" << std::flush;
        return false;
    }
    if (!findFunctions(library, driver)) {
        os::closeLibrary(library);
        return false;
    }
    std::cout << "[SHM VMIC] Library " + quotedName + " loaded successfully\n" << std::flush;
    return true;
}

} // namespace

const ReflectiveDriver* loadReflectiveDriver()
{
    static std::mutex loading;
    static ReflectiveDriver driver;
    static bool loaded = false;
    const std::lock_guard lock(loading);
    loaded = loaded || load(driver);
    return loaded ? &driver : nullptr;
}

} // namespace brvUtils
