#include "brvUtils/startup/InstanceKey.h"

#include <cstdlib>

namespace brvUtils {

const char* getInstanceKey()
{
    static const std::string name = [] {
        const char* const value = std::getenv("STUDIO_INSTANCE");
        return std::string(value != nullptr ? value : "");
    }();
    return name.c_str();
}

std::string buildKeyWithInstance(const std::string& key)
{
    return getInstanceKey() + key;
}

} // namespace brvUtils
