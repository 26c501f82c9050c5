#include "brvUtils/startup/InstanceKey.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/Environment.h"

namespace brvUtils {

const char* getInstanceKey()
{
    // Never destroyed: objects with static storage name their system objects until the very end.
    static const auto* const name = [] {
        return new std::string(os::localFromWide(os::wideFromUtf8(os::environmentVariable("STUDIO_INSTANCE").value_or(""))));
    }();
    return name->c_str();
}

std::string buildKeyWithInstance(const std::string& key)
{
    return getInstanceKey() + key;
}

} // namespace brvUtils
