#pragma once

#include "brvUtils/export.h"
#include "brvUtils/ipc/ISemaphore.h"

#include <memory>
#include <string>

namespace brvUtils {

/// The side of a watched module: tells a WatchdogClient in another program that this one is alive.
///
/// The two meet by the name of a semaphore, and whichever of them starts first makes it. A module that was killed and
/// starts again goes on signalling the same one. Any thread may call.
class BRVUTILS_API WatchdogServer
{
public:
    /// Makes the semaphore, free, or opens it. One that cannot be made or opened throws nothing; it is never signalled.
    /// \param semaphoreFactory SemaphoreWin32::New, or another one that gives null only when memory is short.
    /// \param name of the semaphore; qualified by the instance of the suite.
    WatchdogServer(SemaphoreFactory semaphoreFactory, const std::string& name);

    /// Closes the semaphore; the watcher sees signals stop.
    ~WatchdogServer();

    WatchdogServer(const WatchdogServer&) = delete;
    WatchdogServer& operator=(const WatchdogServer&) = delete;

    /// Says that the module is alive: to be called once per period, such as in its main loop. Never blocks. A signal that
    /// comes before the watcher has taken the one before is lost.
    void signal();

private:
    std::unique_ptr<ISemaphore> semaphore_;
};

} // namespace brvUtils
