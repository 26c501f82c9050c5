#pragma once

#include <memory>
#include <string>

#include <Utilities/export.h>

namespace Utilities {

/// A shared library that is loaded while the program runs. Copies share the library: the system unloads it when the last of
/// them is gone or has loaded another, unless somebody else holds it. On Linux one with variables of templates or of inline
/// functions, such as `std::make_shared` has, stays until the process ends, unless it is compiled with `-fno-gnu-unique`.
/// An object serves one thread at a time; copies may be used by several.
class UTILITIES_API DLLImport
{
public:
    /// No library.
    DLLImport();

    /// Lets go of the library.
    virtual ~DLLImport();

    /// Shares the library of the other; takes its last error.
    DLLImport(const DLLImport&);

    /// Lets go of this one's library and shares that of the other; takes its last error.
    DLLImport& operator=(const DLLImport&);

    /// Lets go of the library that was loaded and loads another.
    /// The library must not throw as it is loaded. If it does, it counts as not loadable on Windows; on Linux, where the
    /// system's loader knows no way back, the process ends by `std::terminate`, with the exception's text.
    /// \param path UTF-8; a path, in which `/` and `\` both separate folders, or a name alone that is looked for where the
    ///        system looks for libraries.
    /// \return whether it is loaded now; if not, getLastError tells why, in a text that names the path.
    bool load(const std::string& path);

    /// The address of what the library exports under that name, on Linux also of what the libraries export that it needs; null
    /// when there is none, or no library (getLastError then tells so). Valid while the library is loaded.
    void* getSymbol(const std::string& name) const;

    /// Whether a library is loaded.
    bool isLoaded() const;

    /// Why the last load or getSymbol of this object failed, for people; empty when neither did. Stays until the next failure.
    const std::string& getLastError() const;

    /// The system's text for the calling thread's last error, without a line end. Empty when the system has none.
    static std::string systemError();

protected:
    mutable std::string lastError; ///< What getLastError tells; derived loaders put theirs here.

private:
    struct Library;
    std::shared_ptr<Library> library_;
};

} // namespace Utilities
