/// Starts the modules of the suite, shows how they are, starts again what dies, tells where the dump of what crashed is, and ends
/// them all.
#include "Configuration.h"
#include "Module.h"
#include "ModuleList.h"
#include "SupervisedModule.h"

#include <Utilities/Clock.h>
#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/platform/CrashDump.h>
#include <brvUtils/startup/EnvConfig.h>
#include <brvUtils/startup/ModulePaths.h>
#include <brvUtils/time/TimedSemaphore.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace suite;

struct Options
{
    float seconds = 0.0f;
    std::string modules;
    SupervisionRules rules;
};

const char* const flags =
    "modules:string::Modules to start, each with variables in front as a shell has them and flags behind, a comma between two, by default what the configuration says;"
    "seconds:float:0:Ends the modules after that time, up to 100000 s, 0 when they end by themselves;"
    "pause:float:1:Seconds between the death of a module and its next start, 0 to 1000;"
    "grace:float:3:Seconds without a sign of life until a module is killed and started again, 2 to 1000, 0 never;"
    "patience:float:1:How many times longer than on an idle computer modules may take for signs of life (20 s until the first one, then 1 s) and at their end (5 s), 1 to 1000;"
    "tries:int:3:Starts of a module in a row without 5 s of life after which all is given up;";

constexpr double beatPeriod = 0.05; // seconds
constexpr int linesPerHeading = 10; // tables between two headings

class Supervisor
{
public:
    Supervisor(std::string name, const std::vector<ModuleCommand>& commands, const SupervisionRules& rules)
        : name_(std::move(name))
    {
        for (const ModuleCommand& command : commands) {
            modules_.push_back(std::make_unique<SupervisedModule>(command, rules));
        }
    }

    /// Until all modules have ended. Asks them to when the time is over (0: never), when a stop is asked for and when one
    /// of them is given up. True when each of them did its work.
    bool run(double seconds)
    {
        brvUtils::TimedSemaphore beat(beatPeriod, true, brvUtils::TimedSemaphore::MODE_TIMER);
        beat.run();
        for (const auto& module : modules_) {
            module->start(clock_.run());
        }
        const auto isOver = [](const auto& module) { return module->isOver(); };
        const auto isFailed = [](const auto& module) { return module->state() == SupervisedModule::State::failed; };
        showAll();
        for (int nextTable = 1; !std::all_of(modules_.begin(), modules_.end(), isOver); beat.ask(-1.0)) {
            lookAtAll();
            if (StopRequest::received() || (seconds > 0.0 && now() >= seconds)
                || std::any_of(modules_.begin(), modules_.end(), isFailed)) {
                endNext();
            } else if (now() >= nextTable) {
                showAll();
                nextTable = static_cast<int>(now()) + 1;
            }
        }
        return std::none_of(modules_.begin(), modules_.end(), isFailed);
    }

private:
    double now() const { return clock_.run(); }

    void lookAtAll()
    {
        for (const auto& module : modules_) {
            if (module->look(now())) {
                show(*module);
            }
        }
    }

    /// The last one first, so that a module ends before those that it was started after.
    void endNext()
    {
        const auto last = std::find_if(modules_.rbegin(), modules_.rend(), [](const auto& module) { return !module->isOver(); });
        if (last != modules_.rend() && (*last)->askToEnd(now())) {
            show(**last);
        }
    }

    void showAll()
    {
        if (tables_++ % linesPerHeading == 0) {
            std::printf("%s: %7s  %s\n", name_.c_str(), "wall s", SupervisedModule::heading().c_str());
        }
        for (const auto& module : modules_) {
            show(*module);
        }
    }

    void show(const SupervisedModule& module) const
    {
        std::printf("%s: %7.1f  %s\n", name_.c_str(), now(), module.row().c_str());
        std::fflush(stdout);
    }

    std::string name_;
    std::vector<std::unique_ptr<SupervisedModule>> modules_; ///< In the order of their start.
    Utilities::Clock clock_;
    int tables_ = 0;
};

int supervise(const std::string& me, const Options& options, const brvUtils::ArgParser& arguments)
{
    std::vector<std::string> common = {"-c", brvUtils::EnvConfig::getCurrentConfiguration()};
    if (!arguments.getConfigFile().empty()) {
        common.insert(common.end(), {"-cfg", utf8(arguments.getConfigFile())});
    }
    const std::string list = options.modules.empty() ? moduleSetting("supervisor", "modules") : utf8(options.modules);
    const std::vector<ModuleCommand> commands = readModuleList(list, brvUtils::GetModulePath(), common);

    // Two would each take the signs of life that the other waits for.
    brvUtils::SemaphoreWin32 only("Supervisor", true, true);
    std::string dead;
    if (only.askAsLock(0.0, dead) == brvUtils::SemaphoreWin32::LockOutcome::refused) {
        complain(me, "another supervisor runs in this instance of the suite");
        return 1;
    }
    Supervisor supervisor(me, commands, options.rules);
    const bool good = supervisor.run(options.seconds);
    only.free();
    tell(std::cout, me, good ? "all modules have ended" : "not all modules did their work");
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    StopRequest::listen();
    std::string me = "supervisor";
    try {
        Options options;
        SupervisionRules& rules = options.rules;
        brvUtils::ArgParser arguments(argc, argv, me, flags);
        arguments.addStringHandler("modules", options.modules);
        arguments.addFloatHandler("seconds", options.seconds);
        arguments.addFloatHandler("pause", rules.pause);
        arguments.addFloatHandler("grace", rules.grace);
        arguments.addFloatHandler("patience", rules.patience);
        arguments.addIntHandler("tries", rules.tries);
        if (!readCommandLine(arguments, me) || !withinLimits(me, "seconds", options.seconds, 0.0f, 100000.0f)
            || !withinLimits(me, "pause", rules.pause, 0.0f, 1000.0f) || (rules.grace != 0.0f && !withinLimits(me, "grace", rules.grace, 2.0f, 1000.0f))
            || !withinLimits(me, "patience", rules.patience, 1.0f, 1000.0f)
            || !withinLimits(me, "tries", static_cast<float>(rules.tries), 1.0f, 1000.0f)) {
            return 1;
        }
        selectConfiguration(arguments);
        nameRun();
        return supervise(me, options, arguments);
    } catch (const std::exception& fault) {
        complain(me, fault.what());
        return 1;
    }
}
