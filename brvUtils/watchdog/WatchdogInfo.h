#pragma once

namespace brvUtils {

/// The settings of one watched module, for programs that keep a list of those they watch. The texts are not copied: they
/// must live as long as the record is read.
struct WatchdogInfo
{
    /// Each argument becomes the field at its place.
    WatchdogInfo(char const* semaphoreName, double longestWait, double interval, double deviation, char const* note)
        : name(semaphoreName)
        , timeout(longestWait)
        , period(interval)
        , tolerance(deviation)
        , text(note)
    {
    }

    char const* name; ///< Of the semaphore that the module signals.
    double timeout; ///< As for WatchdogClient, in seconds.
    double period; ///< As for WatchdogClient, in seconds.
    double tolerance; ///< As for WatchdogClient, a fraction of the period.
    char const* text; ///< For the program's own use; the library does not read it.
};

} // namespace brvUtils
