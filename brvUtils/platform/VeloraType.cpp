#include "brvUtils/platform/VeloraType.h"

#include "brvUtils/core/Text.h"
#include "brvUtils/platform/internal/ModuleTypes.h"

#include <iterator>

namespace brvUtils {

namespace {

constexpr int typeCount = std::size(moduleTypes);

/// What `property` gives of each kind, by code.
template <typename Property>
auto byCode(Property property)
{
    std::map<int, decltype(property(moduleTypes[0]))> result;
    for (const ModuleType& type : moduleTypes) {
        result.emplace(static_cast<int>(result.size()), property(type));
    }
    return result;
}

} // namespace

const std::map<int, std::string> VeloraType::names = byCode([](const ModuleType& type) { return std::string(type.name); });

const std::map<int, std::list<std::string>> VeloraType::aliases
    = byCode([](const ModuleType& type) { return std::list<std::string>(type.aliases.begin(), type.aliases.end()); });

VeloraType::VeloraType() = default;

VeloraType::VeloraType(int code)
    : code_(code >= 0 && code < typeCount ? code : 0)
{
}

VeloraType::VeloraType(const std::string& text)
{
    fromString(text);
}

VeloraType& VeloraType::operator=(int code)
{
    code_ = code;
    return *this;
}

VeloraType& VeloraType::operator=(const std::string& text)
{
    fromString(text);
    return *this;
}

VeloraType::operator int() const
{
    return code_;
}

VeloraType::operator bool() const
{
    return code_ > 0 && code_ < typeCount;
}

bool VeloraType::operator==(const VeloraType& other) const
{
    return code_ == other.code_;
}

bool VeloraType::operator==(int code) const
{
    return code_ == code;
}

std::string VeloraType::toString() const
{
    return names.at(code_);
}

void VeloraType::fromString(const std::string& text)
{
    const std::string lower = brvUtils::tolower(text);
    for (const auto& [code, texts] : aliases) {
        for (const std::string& alias : texts) {
            if (lower.find(alias) != std::string::npos) {
                code_ = code;
                return;
            }
        }
    }
}

int VeloraType::getNbType()
{
    return typeCount;
}

} // namespace brvUtils
