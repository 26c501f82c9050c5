#pragma once

#include "BeatShm.h"

#include <Utilities/HpTimeLog.h>
#include <brvUtils/ipc/EventWin32.h>
#include <brvUtils/time/TimedSemaphore.h>
#include <brvUtils/watchdog/WatchdogServer.h>

#include <cstdint>
#include <string>

namespace suite {

/// How a supervisor knows and reaches a module by name.
struct ModuleLinks
{
    static constexpr double signalPeriod = 0.1; ///< Seconds between two signs of life.

    static std::string watchdog(const std::string& module) { return module + "Alive"; }
    static std::string stopEvent(const std::string& module) { return module + "Stop"; }
};

/// The beat of a module's loop. With it go the signs of life and the figures for a supervisor, whether there is one or not,
/// and a look whether that one wants the module to end. One thread.
class Heartbeat
{
public:
    /// Starts the beat.
    /// \param module its name, one of each within an instance of the suite.
    /// \param period seconds, 0.001 at least.
    /// \throw brvUtils::ConfigurationError when what it shares cannot be had.
    Heartbeat(const std::string& module, double period);

    /// Ends the beat, and tells that the module ends by itself.
    ~Heartbeat();
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    /// Waits for the next beat. Beats that come while nobody waits are lost but for one.
    /// \return false when the module is to end, see StopRequest.
    bool wait();

private:
    void signal(std::int64_t now);
    void tell(std::int64_t now);

    const std::int64_t halfBeat_; ///< Nanoseconds, as all moments here.
    HpTimeLog log_;
    brvUtils::TimedSemaphore semaphore_;
    brvUtils::WatchdogServer watchdog_;
    brvUtils::EventWin32 stop_;
    BeatShm shm_;
    Beat beat_;
    std::int64_t nextSignal_;
    std::int64_t nextTelling_;
    std::int64_t lastTelling_;
    std::int64_t beatsTold_ = 0;
};

} // namespace suite
