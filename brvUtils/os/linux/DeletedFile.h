#pragma once

#include <string_view>

namespace brvUtils::os {

/// What the system appends to the path of a file that is in use when the file has gone or another has taken its place. A name
/// may as well end so by itself.
constexpr std::string_view deletedMark = " (deleted)";

/// The path without the mark, if it bears one behind a name. Also for handlers of signals.
constexpr std::string_view withoutDeletedMark(std::string_view path) noexcept
{
    const std::size_t kept = path.size() - deletedMark.size();
    return path.size() > deletedMark.size() && path.substr(kept) == deletedMark ? path.substr(0, kept) : path;
}

} // namespace brvUtils::os
