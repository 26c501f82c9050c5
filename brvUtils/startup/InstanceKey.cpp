#include "brvUtils/startup/InstanceKey.h"

#include <cstdlib>

namespace brvUtils {

const char* getInstanceKey()
{
    // Never destroyed: objects with static storage name their system objects until the very end.
    static const auto* const name = [] {
        const char* const value = std::getenv("STUDIO_INSTANCE");
        return new std::string(value != nullptr ? value : "");
    }();
    return name->c_str();
}

std::string buildKeyWithInstance(const std::string& key)
{
    return getInstanceKey() + key;
}

} // namespace brvUtils
