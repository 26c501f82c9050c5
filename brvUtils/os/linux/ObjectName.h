#pragma once

#include "brvUtils/os/linux/TableLayout.h"
#include "brvUtils/os/Error.h"

#include <string_view>

namespace brvUtils::os {

/// As on Windows: a prefix says which sessions see the name (here there is but one), any other backslash is a fault.
inline ErrorCode normalizeName(const char* text, std::string_view& name)
{
    if (text == nullptr || *text == '\0') {
        return error::invalidParameter;
    }
    name = text;
    if (name.size() > nameLimit) {
        return error::fileNameTooLong;
    }
    for (const std::string_view prefix : {std::string_view("Local\\"), std::string_view("Global\\")}) {
        if (name.substr(0, prefix.size()) == prefix) {
            name.remove_prefix(prefix.size());
            break;
        }
    }
    if (name.find('\\') != std::string_view::npos) {
        return error::pathNotFound;
    }
    return name.empty() ? error::invalidParameter : error::none;
}

/// FNV-1a, never 0.
inline std::uint64_t hashOf(std::string_view name)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    }
    return hash != 0 ? hash : 1;
}

} // namespace brvUtils::os
