#include "brvUtils/os/DynamicLibrary.h"

#include <dlfcn.h>

namespace brvUtils::os {

LibraryOpening openLibrary(const std::string& name)
{
    // All that it needs at once: a function that is missing shall fail here, and not in the midst of the work.
    void* const library = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    return {static_cast<DynamicLibrary*>(library), library != nullptr ? error::none : error::moduleNotFound};
}

void* librarySymbol(DynamicLibrary* library, const char* name)
{
    return library != nullptr ? dlsym(library, name) : nullptr;
}

void closeLibrary(DynamicLibrary* library)
{
    if (library != nullptr) {
        dlclose(library);
    }
}

} // namespace brvUtils::os
