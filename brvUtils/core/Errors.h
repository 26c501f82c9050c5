#pragma once

#include <stdexcept>
#include <string>

#include "brvUtils/export.h"

/// \file
/// The failures that the library reports to modules. Each is thrown by value and carries its message alone: `what()` is
/// the text given to the constructor, unchanged. The odd spellings and parents are kept for callers.

namespace brvUtils {

/// The configuration environment is missing or invalid, or a composite segment cannot be created or has another version.
class BRVUTILS_API ConfigurationError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit ConfigurationError(const std::string& message) : std::runtime_error(message) {}
};

/// A command-line argument is malformed or missing.
class BRVUTILS_API CommandLineError : public ConfigurationError
{
public:
    /// \param message for `what()`.
    explicit CommandLineError(const std::string& message) : ConfigurationError(message) {}
};

/// For modules: a syntax fault in a configuration text of their own. The library throws none.
class BRVUTILS_API ConfigSyntaxError : public ConfigurationError
{
public:
    /// \param message for `what()`.
    explicit ConfigSyntaxError(const std::string& message) : ConfigurationError(message) {}
};

/// For modules: a missing or bad key. The library throws none.
class BRVUTILS_API KeyError : public ConfigurationError
{
public:
    /// \param message for `what()`.
    explicit KeyError(const std::string& message) : ConfigurationError(message) {}
};

/// For modules: a fault of a file. The library throws none.
class BRVUTILS_API FileError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit FileError(const std::string& message) : std::runtime_error(message) {}
};

/// The plug-in folder cannot be found.
class BRVUTILS_API PluginError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit PluginError(const std::string& message) : std::runtime_error(message) {}
};

/// For modules: a fault of the network. The library throws none.
class BRVUTILS_API NetworkError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit NetworkError(const std::string& message) : std::runtime_error(message) {}
};

/// For modules: a host name that cannot be resolved. Not a `NetworkError`. The library throws none.
class BRVUTILS_API NetworkBadHostError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit NetworkBadHostError(const std::string& message) : std::runtime_error(message) {}
};

/// For modules: a process that is not there. The library throws none.
class BRVUTILS_API PrecessNotFoundError : public NetworkError
{
public:
    /// \param message for `what()`.
    explicit PrecessNotFoundError(const std::string& message) : NetworkError(message) {}
};

/// For modules: steps taken in a wrong order. The library throws none.
class BRVUTILS_API ProgramFlowError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit ProgramFlowError(const std::string& message) : std::runtime_error(message) {}
};

/// The calling program misuses the library. The only `std::logic_error` of the family.
class BRVUTILS_API ProgrammingError : public std::logic_error
{
public:
    /// \param message for `what()`.
    explicit ProgrammingError(const std::string& message) : std::logic_error(message) {}
};

/// A wait that failed: base of the two below, never thrown itself.
class BRVUTILS_API SynchroError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit SynchroError(const std::string& message) : std::runtime_error(message) {}
};

/// For modules: a shared segment that cannot be reached in time. The library throws none.
class BRVUTILS_API ShmSynchroError : public SynchroError
{
public:
    /// \param message for `what()`.
    explicit ShmSynchroError(const std::string& message) : SynchroError(message) {}
};

/// A semaphore that could not be taken in time.
class BRVUTILS_API SemaphoreSynchroError : public SynchroError
{
public:
    /// \param message for `what()`.
    explicit SemaphoreSynchroError(const std::string& message) : SynchroError(message) {}
};

/// A thread cannot be launched, or the process cannot be bound to the processor asked for.
class BRVUTILS_API SystemRessourcesError : public std::runtime_error
{
public:
    /// \param message for `what()`.
    explicit SystemRessourcesError(const std::string& message) : std::runtime_error(message) {}
};

/// The system's text for the calling thread's last error, as the system gives it: on Windows in the user's language with
/// its line end, on Linux the C library's text for `errno`. Empty when the system has no text. Any thread.
BRVUTILS_API std::string GetLastSystemError();

} // namespace brvUtils

/// Throws `brvUtils::ProgrammingError` with "Assertion failed: text-line" and a line end, cut at 255 characters. Writes
/// nothing and never returns. `text` is the condition or the file name, not null. Any thread.
[[noreturn]] BRVUTILS_API void AssertAbort(const char* text, int line);
