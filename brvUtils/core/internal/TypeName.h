#pragma once

#include <string>
#include <typeinfo>

#if __has_include(<cxxabi.h>)
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#endif

namespace brvUtils {

/// The name of a type as people write it. Visual C++ gives it so; the others encode it.
inline std::string typeName(const std::type_info& type)
{
#if __has_include(<cxxabi.h>)
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return text != nullptr ? text.get() : type.name();
#else
    return type.name();
#endif
}

} // namespace brvUtils
