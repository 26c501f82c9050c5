#include "brvUtils/startup/internal/References.h"

#include "brvUtils/os/Environment.h"

#include <algorithm>
#include <optional>

namespace brvUtils {

namespace {

constexpr std::size_t mostReferences = 10'000;
constexpr std::size_t mostText = 1 << 20; // bytes that the values may add

std::optional<std::string> valueOf(const std::string& name, const std::map<std::string, std::string>& known)
{
    const auto found = known.find(name);
    if (found != known.end()) {
        return found->second;
    }
    return name == "PlatformName" ? std::optional<std::string>("x64") : os::environmentVariable(name);
}

bool isSeparator(char character)
{
    return character == '/' || character == '\\';
}

/// The variables whose values the place of the next reference lies in.
class Nesting
{
public:
    /// \param behind length of the text from the reference's start on.
    void leaveUpTo(std::size_t behind)
    {
        while (!values_.empty() && behind <= values_.back().behind) {
            values_.pop_back();
        }
    }

    bool isInside(const std::string& name) const
    {
        return std::any_of(values_.begin(), values_.end(), [&](const Value& value) { return value.name == name; });
    }

    /// \param behind length of the text behind the value.
    void enter(const std::string& name, std::size_t behind) { values_.push_back({name, behind}); }

private:
    struct Value
    {
        std::string name;
        std::size_t behind;
    };
    std::vector<Value> values_;
};

} // namespace

ResolvedText resolveReferences(std::string text, const std::map<std::string, std::string>& known)
{
    ResolvedText result;
    result.text = std::move(text);
    std::string& resolved = result.text;
    Nesting nesting;
    const std::size_t longest = resolved.size() + mostText;
    std::size_t start = 0;
    while ((start = resolved.find("${", start)) != std::string::npos) {
        const std::size_t end = resolved.find('}', start);
        if (end == std::string::npos) {
            result.fault = ResolvedText::Fault::noEnd;
            return result;
        }
        result.name = resolved.substr(start + 2, end - start - 2);
        nesting.leaveUpTo(resolved.size() - start);
        if (nesting.isInside(result.name) || result.variables.size() == mostReferences || resolved.size() > longest) {
            result.fault = ResolvedText::Fault::endless;
            return result;
        }
        auto value = valueOf(result.name, known);
        if (!value) {
            result.fault = ResolvedText::Fault::undefined;
            return result;
        }
        result.variables.emplace_back(result.name, *value);
        const bool separated = (!value->empty() && isSeparator(value->back())) || (end + 1 < resolved.size() && isSeparator(resolved[end + 1]));
        if (result.name == "STUDIO_PATH" && !separated) {
            *value += '/';
        }
        nesting.enter(result.name, resolved.size() - end - 1);
        resolved.replace(start, end + 1 - start, *value);
        start = start > 0 ? start - 1 : 0; // a "$" before the value may make a reference of it
    }
    return result;
}

std::string faultText(const ResolvedText& resolved)
{
    switch (resolved.fault) {
    case ResolvedText::Fault::noEnd: return "a \"${\" has no \"}\"";
    case ResolvedText::Fault::undefined: return "there is no variable " + resolved.name;
    case ResolvedText::Fault::endless: return resolved.name + " leads back to itself, or to too much text";
    default: return {};
    }
}

} // namespace brvUtils
