#include "Utilities/DLLImport.h"

#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/FileSystem.h"

namespace Utilities {

namespace os = brvUtils::os;

struct DLLImport::Library
{
    os::DynamicLibrary* opened;
    std::string path;

    Library(os::DynamicLibrary* library, std::string itsPath) : opened(library), path(std::move(itsPath)) {}
    ~Library() { os::closeLibrary(opened); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

DLLImport::DLLImport() = default;
DLLImport::~DLLImport() = default;
DLLImport::DLLImport(const DLLImport&) = default;
DLLImport& DLLImport::operator=(const DLLImport&) = default;

bool DLLImport::load(const std::string& path)
{
    library_.reset();
    const std::string shown = os::pathForLibraries(path);
    const os::LibraryOpening opening = os::openLibrary(path);
    if (opening.opened == nullptr) {
        lastError = shown + ": " + opening.text;
        return false;
    }
    library_ = std::make_shared<Library>(opening.opened, shown);
    return true;
}

void* DLLImport::getSymbol(const std::string& name) const
{
    void* const symbol = library_ != nullptr ? os::librarySymbol(library_->opened, name.c_str()) : nullptr;
    if (symbol == nullptr) {
        lastError = library_ != nullptr ? library_->path + ": does not export " + name : name + ": no library is loaded";
    }
    return symbol;
}

bool DLLImport::isLoaded() const
{
    return library_ != nullptr;
}

const std::string& DLLImport::getLastError() const
{
    return lastError;
}

std::string DLLImport::systemError()
{
    std::string text = os::utf8FromWide(os::wideFromLocal(os::lastSystemErrorText()));
    text.resize(text.find_last_not_of(" \r\n") + 1);
    return text;
}

} // namespace Utilities
