#pragma once

#include <brvUtils/startup/ArgParser.h>

#include <csignal>
#include <iostream>

/// \file
/// What the modules of this suite have in common.

namespace suite {

/// Asked to end by Ctrl-C or a termination signal.
class StopRequest
{
public:
    /// From now on these signals end nothing by themselves.
    static void listen()
    {
        std::signal(SIGINT, remember);
        std::signal(SIGTERM, remember);
    }

    static bool received() { return received_ != 0; }

private:
    static void remember(int) { received_ = 1; }

    static inline volatile std::sig_atomic_t received_ = 0;
};

/// Reads the command line of a module that takes flags only. False when the module cannot go on; the error stream then
/// tells why, or how to use it.
inline bool readCommandLine(brvUtils::ArgParser& arguments)
{
    if (!arguments.parse()) {
        arguments.printErrorMessage(std::cerr);
        return false;
    }
    if (!arguments.getRemainingArgs().empty()) {
        std::cerr << "'" << arguments.getRemainingArgs().front() << "' is no flag\n";
        return false;
    }
    return true;
}

} // namespace suite
