#pragma once

#include "brvUtils/os/StandardStreams.h"

#include <string>

namespace brvTesting {

/// Keeps what this process writes to its standard output and error stream from the terminal while the object lives:
/// `printf`, C++ streams, all libraries, children that inherit the streams.
///
///     CapturedOutput captured;
///     event.set();
///     EXPECT_EQ(captured.out(), "...\n");
///
/// When the test has failed meanwhile, the destructor hands on what was captured, failure messages included.
class CapturedOutput
{
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// What was written to the standard output since the construction; "\n" ends lines on every system.
    std::string out() const;
    /// The same of the standard error stream.
    std::string err() const;

private:
    struct HandOn
    {
        ~HandOn();
        std::string out;
        std::string err;
    } handOn_; // Before the captures, so that it is destroyed when the streams are back.
    brvUtils::os::StandardStreamCapture out_{brvUtils::os::StandardStream::output};
    brvUtils::os::StandardStreamCapture err_{brvUtils::os::StandardStream::error};
};

} // namespace brvTesting
