#include "Utilities/System.h"

#include "brvUtils/os/Environment.h"
#include "brvUtils/os/User.h"

#include <optional>

namespace Utilities::System {

namespace {

std::optional<std::string> valueOf(const std::string& name, const std::map<std::string, std::string>& variables)
{
    const auto found = variables.find(name);
    return found != variables.end() ? found->second : brvUtils::os::environmentVariable(name);
}

} // namespace

std::string GetEffectiveUserName()
{
    return brvUtils::os::effectiveUserName();
}

bool ExpandLocalEnvironmentVariables(const std::string& text, std::string& result, const std::string& pattern,
    const std::map<std::string, std::string>& variables)
{
    const std::size_t star = pattern.find('*');
    const std::string before = pattern.substr(0, star);
    const std::string behind = star != pattern.npos ? pattern.substr(star + 1) : std::string();
    if (before.empty() || behind.empty()) {
        result = text;
        return true;
    }

    // What ends within neither bound runs in a circle, or multiplies beyond all use.
    constexpr int mostReferences = 1000;
    const std::size_t mostText = text.size() + (1U << 20);
    std::string expanded = text;
    bool complete = true;
    int references = 0;
    std::size_t begin = expanded.find(before);
    while (begin != expanded.npos) {
        const std::size_t name = begin + before.size();
        const std::size_t end = expanded.find(behind, name);
        if (end == expanded.npos) {
            break;
        }
        const std::optional<std::string> value = valueOf(expanded.substr(name, end - name), variables);
        if (value) {
            // The value is looked through in turn.
            expanded.replace(begin, end + behind.size() - begin, *value);
        } else {
            complete = false;
            begin = name;
        }
        if (++references > mostReferences || expanded.size() > mostText) {
            result = text;
            return false;
        }
        begin = expanded.find(before, begin);
    }
    result = std::move(expanded);
    return complete;
}

} // namespace Utilities::System
