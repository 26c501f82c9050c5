#include "SupervisedModule.h"

#include "Heartbeat.h"
#include "Module.h"

#include <brvUtils/time/TimerWin32.h>

#include <cstdio>
#include <utility>

namespace suite {

namespace {

// Each times the patience of the rules.
constexpr double longestSilence = 1.0; // seconds between signs of life
constexpr double tolerance = 1.5; // of the mean of ten: a busy computer is no dead module
constexpr double startPatience = 20.0; // seconds until the first sign of life
constexpr double endPatience = 5.0; // seconds until a module ends that was asked to

constexpr double lasting = 5.0; // seconds alive after which earlier failures are forgotten

constexpr std::size_t stateWidth = 10;

constexpr double milliseconds = 1e3; // in a second
constexpr double microseconds = 1e6;

const char* nameOf(SupervisedModule::State state)
{
    switch (state) {
    case SupervisedModule::State::starting: return "start";
    case SupervisedModule::State::alive: return "alive";
    case SupervisedModule::State::dead: return "dead";
    case SupervisedModule::State::restarting: return "restart";
    case SupervisedModule::State::ending: return "ending";
    case SupervisedModule::State::ended: return "ended";
    case SupervisedModule::State::failed: return "failed";
    }
    return "";
}

std::string inSeconds(double seconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

} // namespace

SupervisedModule::SupervisedModule(ModuleCommand command, const SupervisionRules& rules)
    : command_(std::move(command))
    , rules_(rules)
    , stop_(ModuleLinks::stopEvent(command_.name).c_str(), true, false)
    , shm_(command_.name)
    , signal_(brvUtils::SemaphoreWin32::New, ModuleLinks::watchdog(command_.name))
{
    // In place of a dialog.
    command_.variables.emplace_back("STUDIO_DUMP_NO_MSG", "1");
    stop_.reset();
}

void SupervisedModule::start(double now)
{
    now_ = now;
    launch(State::starting, now);
}

void SupervisedModule::launch(State state, double now)
{
    killReason_.clear();
    beat_ = {};
    dumps_ = DumpWatch(command_.program, command_.variables);
    process_ = std::make_unique<Process>(command_.program, command_.arguments, command_.variables);
    number_ = process_->number();
    become(state, failures_ > 0 ? "start " + std::to_string(failures_ + 1) + " of " + std::to_string(rules_.tries) : "");
    since_ = now;
}

bool SupervisedModule::look(double now)
{
    now_ = now;
    const State before = state_;
    const std::string noteBefore = note_;
    if (process_ != nullptr) {
        if (const auto end = process_->end()) {
            endWatching();
            process_.reset();
            lookAtEnd(*end, now);
        } else {
            lookAtSigns(now);
        }
    } else if (state_ == State::dead && now - since_ >= rules_.pause) {
        launch(State::restarting, now);
    }
    return state_ != before || note_ != noteBefore;
}

void SupervisedModule::endWatching()
{
    if (watchdog_ == nullptr) {
        return;
    }
    // The signal that the watchdog waits for comes from here, or else it would have to time out.
    brvUtils::TimerWin32 signals(0.01, [](void* signal) { static_cast<brvUtils::WatchdogServer*>(signal)->signal(); }, &signal_, 0);
    signals.run();
    watchdog_.reset();
}

void SupervisedModule::lookAtEnd(const ProcessEnd& end, double now)
{
    std::string text = killReason_.empty() ? end.toText() : killReason_;
    const std::string dump = dumps_.dumpOf(number_);
    // Tools that kill a process on Windows may leave the code of a good end, and so does a crash.
    Beat last;
    const bool silent = shm_.look(last) && last.process == number_ && last.ended == 0;
    if (!dump.empty()) {
        text = "crashed, dump " + dump;
    } else if (end.good() && silent) {
        text += ", but not by itself";
    }
    if (end.good() && !silent && dump.empty()) {
        become(State::ended, text);
    } else if (state_ == State::ending) {
        become(State::failed, text);
    } else if (++failures_ >= rules_.tries) {
        become(State::failed, text + "; given up after " + std::to_string(failures_) + " starts");
    } else {
        become(State::dead, text + "; starts again " + (rules_.pause > 0.0f ? "in " + inSeconds(rules_.pause) : "at once"));
        since_ = now; // also when it was dead before its process was killed
    }
}

void SupervisedModule::lookAtSigns(double now)
{
    Beat beat;
    if (shm_.look(beat) && beat.process == process_->number()) {
        beat_ = beat;
        if (watchdog_ == nullptr && state_ != State::ending) {
            // Not before, or it would complain of the silence of a program that is just being loaded.
            watchdog_ = std::make_unique<brvUtils::WatchdogClient>(brvUtils::SemaphoreWin32::New,
                ModuleLinks::watchdog(command_.name), longestSilence * rules_.patience, ModuleLinks::signalPeriod,
                tolerance * rules_.patience);
            watchdog_->startMonitoring();
        }
    }
    const bool alive = watchdog_ != nullptr && watchdog_->isAlive();
    const double lasted = now - since_;
    if (state_ == State::ending) {
        const double longest = endPatience * rules_.patience;
        if (lasted >= longest) {
            kill("did not end within " + inSeconds(longest) + ", killed");
        }
    } else if (alive) {
        become(State::alive, "");
        if (now - since_ >= lasting) {
            failures_ = 0;
        }
    } else if (state_ == State::alive) {
        become(State::dead, "no sign of life" + (rules_.grace > 0.0f ? "; killed unless signs come again within " + inSeconds(rules_.grace) : std::string()));
    } else if (state_ == State::dead && rules_.grace > 0.0f && lasted >= rules_.grace) {
        kill("killed, no sign of life for " + inSeconds(rules_.grace));
    } else if (state_ != State::dead && lasted >= startPatience * rules_.patience) {
        kill("killed, no sign of life within " + inSeconds(startPatience * rules_.patience));
    }
}

bool SupervisedModule::askToEnd(double now)
{
    now_ = now;
    if (isOver() || state_ == State::ending) {
        return false;
    }
    stop_.set();
    if (process_ != nullptr) {
        endWatching();
        become(State::ending, "asked to end");
    } else {
        // It was to come back. A user who ends all does not mind; otherwise its work is not done.
        become(StopRequest::received() ? State::ended : State::failed, "not started again");
    }
    return true;
}

void SupervisedModule::become(State state, const std::string& note)
{
    if (state != state_) {
        state_ = state;
        since_ = now_;
    }
    note_ = note;
}

void SupervisedModule::kill(const std::string& reason)
{
    killReason_ = reason;
    process_->kill();
}

std::string SupervisedModule::heading()
{
    char text[160];
    std::snprintf(text, sizeof text, "%-10s %8s  %-8s %9s %9s %14s %8s %8s", "module", "process", "state", "beats/s", "last ms",
        "jitter p50 us", "p99 us", "max us");
    return text;
}

std::string SupervisedModule::row() const
{
    char start[160], figures[160];
    std::snprintf(start, sizeof start, "%-10s %8u  ", command_.name.c_str(), number_);
    std::string rest = note_;
    if (note_.empty() && beat_.beats > 0) {
        std::snprintf(figures, sizeof figures, "%8.1f %9.3f %14.1f %8.1f %8.1f", beat_.rate, beat_.lastInterval * milliseconds,
            beat_.jitterMedian * microseconds, beat_.jitter99 * microseconds, beat_.jitterMax * microseconds);
        rest = figures;
    }
    std::string state = nameOf(state_);
    if (!rest.empty()) {
        state.resize(stateWidth, ' ');
    }
    return start + state + rest;
}

} // namespace suite
