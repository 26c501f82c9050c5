#pragma once

#include "BeatShm.h"
#include "DumpWatch.h"
#include "Process.h"

#include <brvUtils/ipc/EventWin32.h>
#include <brvUtils/watchdog/WatchdogClient.h>
#include <brvUtils/watchdog/WatchdogServer.h>

#include <memory>
#include <string>
#include <vector>

namespace suite {

/// What a supervisor starts.
struct ModuleCommand
{
    std::string name; ///< The module's name: that of the program, or what its flag -p says.
    std::string program; ///< Path, UTF-8.
    std::vector<std::string> arguments; ///< UTF-8.
    std::vector<EnvironmentVariable> variables; ///< Added to the supervisor's own, or in place of them.
};

/// What a supervisor does about modules that die.
struct SupervisionRules
{
    float pause = 1.0f; ///< Seconds between a module's death and its next start.
    float grace = 3.0f; ///< Seconds without a sign of life after which a dead module's process is killed, 2 at least; 0: never.
    float patience = 1.0f; ///< How many times longer than on an idle computer a module may take for each sign of life and for its end.
    int tries = 3; ///< After so many starts in a row of which none lasted, the module is given up.
};

/// A module in a process of its own that is watched, and started again when it dies. One thread at a time, and always the
/// same; moments are seconds on a clock of the caller's. When it crashes no dialog tells the user of the dump, or it would not
/// be started again before somebody has answered: the note does.
class SupervisedModule
{
public:
    enum class State {
        starting, ///< For the first time; without a sign of life so far.
        alive,
        dead, ///< Its process has ended without being asked, or crashed, or gives no sign of life.
        restarting, ///< As starting, after a death.
        ending, ///< Asked to end.
        ended, ///< By itself or when it was asked, and for good.
        failed ///< Given up, dead when all were to end, or it had to be killed at its end.
    };

    /// \throw brvUtils::ConfigurationError when what it shares with the module cannot be had.
    SupervisedModule(ModuleCommand command, const SupervisionRules& rules);

    /// Starts the process for the first time. \throw brvUtils::SystemRessourcesError when the system refuses.
    void start(double now);

    /// Looks at the process and does what is to be done. \return whether the state or the note is another one.
    /// \throw brvUtils::SystemRessourcesError when a process could not be started again.
    bool look(double now);

    /// Asks the process to end. One that has not done so 5 s later, times the patience, is killed. \return whether this changed the state.
    bool askToEnd(double now);

    State state() const { return state_; }

    /// Nothing runs any more and nothing will be started.
    bool isOver() const { return state_ == State::ended || state_ == State::failed; }

    /// Name, process, state, and then the figures of its beat, or in their place what there is to say about the state.
    std::string row() const;

    /// The heads of the columns of row().
    static std::string heading();

private:
    void launch(State state, double now);
    void endWatching();
    void lookAtEnd(const ProcessEnd& end, double now);
    void lookAtSigns(double now);
    void become(State state, const std::string& note);
    void kill(const std::string& reason);

    ModuleCommand command_;
    SupervisionRules rules_;
    brvUtils::EventWin32 stop_;
    BeatShm shm_;
    Beat beat_;
    State state_ = State::starting;
    std::string note_; ///< What there is to say about the state.
    std::string killReason_; ///< Empty unless this killed the process.
    double since_ = 0.0; ///< When the state began.
    double now_ = 0.0;
    int failures_ = 0; ///< Starts in a row that did not last.
    std::uint32_t number_ = 0; ///< Of the process, also after its end.
    DumpWatch dumps_;
    std::unique_ptr<Process> process_; ///< Null when none runs.
    brvUtils::WatchdogServer signal_; ///< The module's, so that nobody waits for one that it gives no more.
    std::unique_ptr<brvUtils::WatchdogClient> watchdog_; ///< From the first news of the process until its end.
};

} // namespace suite
