#pragma once

#include <Utilities/Encoding.h>
#include <brvUtils/startup/ArgParser.h>

#include <csignal>
#include <iostream>
#include <sstream>
#include <string>

/// \file
/// What the modules of this suite have in common.

namespace suite {

/// Asked to end by Ctrl-C, a termination signal or another module.
class StopRequest
{
public:
    /// From now on these signals end nothing by themselves.
    static void listen()
    {
        std::signal(SIGINT, remember);
        std::signal(SIGTERM, remember);
    }

    /// As if such a signal had come.
    static void make() { received_ = 1; }

    static bool received() { return received_ != 0; }

private:
    static void remember(int) { received_ = 1; }

    static inline volatile std::sig_atomic_t received_ = 0;
};

/// Writes the lines of a text that are not empty, each behind the module's name, as all lines of a module.
inline void tell(std::ostream& out, const std::string& module, const std::string& text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            out << module << ": " << line << '\n';
        }
    }
    out.flush();
}

/// The same to the error stream.
inline void complain(const std::string& module, const std::string& text)
{
    tell(std::cerr, module, text);
}

/// Reads the command line of a module that takes flags only. False when the module cannot go on; the error stream then
/// tells why, or how to use it. \param module set to the name that the command line gives the module.
inline bool readCommandLine(brvUtils::ArgParser& arguments, std::string& module)
{
    const bool good = arguments.parse();
    module = arguments.getProcessName();
    if (!good) {
        complain(module, arguments.getErrorMessage());
        return false;
    }
    if (!arguments.getRemainingArgs().empty()) {
        complain(module, "'" + arguments.getRemainingArgs().front() + "' is no flag");
        return false;
    }
    return true;
}

/// An argument, which comes in the code page of the process, in UTF-8.
inline std::string utf8(const std::string& argument)
{
    using namespace Utilities::Encoding;
    return Transcode(Transcode(argument, Mode::Local8Bit), Mode::Utf8);
}

/// Whether the value of a flag lies within its limits; if not, the error stream tells them.
inline bool withinLimits(const std::string& module, const char* flag, float value, float least, float most)
{
    if (value >= least && value <= most) {
        return true;
    }
    std::ostringstream text;
    text << '-' << flag << " is " << least << " to " << most << ", not " << value;
    complain(module, text.str());
    return false;
}

} // namespace suite
