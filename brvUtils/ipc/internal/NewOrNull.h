#pragma once

#include <new>
#include <utility>

namespace brvUtils {

/// A new object, or null when memory is short, also where its constructor finds out.
template <typename Type, typename... Arguments>
Type* newOrNull(Arguments&&... arguments)
{
    try {
        return new Type(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace brvUtils
