#include "brvUtils/platform/MachineSetting.h"

#include "brvUtils/os/MachineSetting.h"

namespace brvUtils {

bool machineSetting(const std::string& subKey, const std::string& name, std::string& text)
{
    // Systems differ in what they make of separators without a folder between them.
    std::string key;
    for (const char c : subKey) {
        if (c != '\\' || (!key.empty() && key.back() != c)) {
            key += c;
        }
    }
    if (!key.empty() && key.back() == '\\') {
        key.pop_back();
    }
    return os::machineSetting(key, name, text) == os::error::none;
}

} // namespace brvUtils
