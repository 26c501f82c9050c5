#include "brvUtils/os/DynamicLibrary.h"

#include "brvUtils/os/linux/DeletedFile.h"
#include "brvUtils/os/linux/NativePath.h"

#include <cstdint>
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <unistd.h>

namespace brvUtils::os {
namespace {

/// All that it needs at once: a function that is missing shall fail here, and not in the midst of the work.
void* openWhole(const char* path) noexcept
{
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

/// The loader's text, which mostly begins with the path and a colon, without these.
std::string loaderText(const std::string& path)
{
    const char* const told = dlerror();
    const std::string text = told != nullptr ? told : "";
    const std::string start = path + ": ";
    return text.compare(0, start.size(), start) == 0 ? text.substr(start.size()) : text;
}

/// The file of a line of the list of mappings. It follows five fields without blanks and is filled up with blanks.
std::string fileOfMapping(const std::string& line)
{
    const std::size_t begin = line.find('/');
    if (begin == std::string::npos) {
        return {};
    }
    const std::string file = line.substr(begin);
    return access(file.c_str(), F_OK) == 0 ? file : std::string(withoutDeletedMark(file));
}

} // namespace

LibraryOpening openLibrary(const std::string& name)
{
    // An empty name would be this program.
    if (name.empty() || name.find('\0') != std::string::npos) {
        return {nullptr, error::moduleNotFound, "no name of a library"};
    }
    const std::string path = nativePath(name);
    void* const library = openWhole(path.c_str());
    if (library == nullptr) {
        return {nullptr, error::moduleNotFound, loaderText(path)};
    }
    return {static_cast<DynamicLibrary*>(library)};
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

std::string libraryFile(const void* address)
{
    // The loader knows a library by the path that it was looked for under, which may be relative to a folder that is the
    // current one no more.
    std::ifstream mappings("/proc/self/maps");
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    for (std::string line; std::getline(mappings, line);) {
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        if (std::sscanf(line.c_str(), "%zx-%zx", &begin, &end) == 2 && begin <= wanted && wanted < end) {
            return fileOfMapping(line);
        }
    }
    return {};
}

} // namespace brvUtils::os
