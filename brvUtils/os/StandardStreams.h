#pragma once

#include "brvUtils/os/Error.h"

#include <memory>

namespace brvUtils::os {

/// A stream that can be captured. The numbers are those of the C library.
enum class StandardStream {
    output = 1, ///< `stdout`, `std::cout`
    error = 2 ///< `stderr`, `std::cerr`
};

/// Switches off the translation of line ends on the three standard streams of this process. Nothing to do on Linux.
void useBinaryStandardStreams();

/// Sends a standard stream of this process into a file of its own while the object lives: what C and C++ streams of all
/// libraries of the process write, and what children write that inherit the stream.
///
/// Objects for the same stream are destroyed in reverse order. The stream is one for all threads of the process.
class StandardStreamCapture
{
public:
    /// Begins. `error()` tells whether it worked; if not, the stream stays what it was.
    explicit StandardStreamCapture(StandardStream stream);
    ~StandardStreamCapture();
    StandardStreamCapture(const StandardStreamCapture&) = delete;
    StandardStreamCapture& operator=(const StandardStreamCapture&) = delete;

    /// `error::none`, or why the stream is not captured: error::invalidHandle where the process has no such stream,
    /// error::tooManyOpenFiles, or what the system says about the file.
    ErrorCode error() const;

    /// All that was written so far, with "\n" for the line ends that the C library translated. Empty when nothing was
    /// captured.
    std::string text() const;

private:
    struct System;
    std::unique_ptr<System> system_;
};

} // namespace brvUtils::os
