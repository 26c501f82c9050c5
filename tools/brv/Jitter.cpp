#include "BeatLog.h"
#include "Command.h"

#include <brvUtils/time/ThreadStanding.h>
#include <brvUtils/time/TimedSemaphore.h>
#include <brvUtils/time/TimerWin32.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <thread>

namespace brvTool {

namespace {

struct Options
{
    double period = 0.001; ///< Seconds.
    double seconds = 10;
    bool busy = false;
    std::string source = "timer";
};

/// What beats, where, and how that was scheduled.
struct Beats
{
    Beats(double period, std::size_t count) : log(period, count) {}

    BeatLog log;
    std::string standing = "unknown"; ///< Of the thread that beats; written by it with its first beat.
    unsigned long long missed = 0;

    void beat()
    {
        if (first_) {
            first_ = false;
            standing = brvUtils::standingOfCurrentThread();
        }
        log.beat();
    }

private:
    bool first_ = true;
};

/// All processors at work, as in a suite that has too little of them.
class Busy
{
public:
    explicit Busy(bool wanted)
    {
        for (unsigned i = 0; wanted && i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
            threads_.emplace_back([this] {
                while (!done_.load(std::memory_order_relaxed)) {
                }
            });
        }
    }
    ~Busy()
    {
        done_ = true;
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    std::atomic<bool> done_{false};
    std::vector<std::thread> threads_;
};

void runTimer(Beats& beats, const Options& options, unsigned long mode)
{
    brvUtils::TimerWin32 timer(options.period, [](void* context) { static_cast<Beats*>(context)->beat(); }, &beats, mode);
    beats.log.start();
    if (!timer.run()) {
        throw Fault("the timer cannot be started");
    }
    // A source that has come to a stop is not waited for for ever.
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(2 * options.seconds + 10);
    while (!beats.log.full() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    beats.missed = timer.getMissedBeats();
}

void runSemaphore(Beats& beats, const Options& options, brvUtils::TimedSemaphore::TimerMode mode)
{
    brvUtils::TimedSemaphore semaphore(options.period, true, mode);
    beats.log.start();
    semaphore.run();
    semaphore.ask(0); // lets through when it was started, which is no beat of the grid
    while (!beats.log.full() && semaphore.ask(10)) {
        beats.beat();
    }
}

struct Source
{
    const char* name;
    const char* what;
    void (*run)(Beats&, const Options&);
};

const std::array<Source, 6> sources{{
    {"timer", "TimerWin32, system's timer from 1 ms, yielding poller below", [](Beats& b, const Options& o) { runTimer(b, o, 0); }},
    {"spin", "TimerWin32, spinning poller", [](Beats& b, const Options& o) { runTimer(b, o, 6); }},
    {"yield", "TimerWin32, yielding poller", [](Beats& b, const Options& o) { runTimer(b, o, 7); }},
    {"semaphore", "TimedSemaphore, MODE_TIMER", [](Beats& b, const Options& o) { runSemaphore(b, o, brvUtils::TimedSemaphore::MODE_TIMER); }},
    {"semaphore-yield", "TimedSemaphore, MODE_YIELD", [](Beats& b, const Options& o) { runSemaphore(b, o, brvUtils::TimedSemaphore::MODE_YIELD); }},
    {"semaphore-spin", "TimedSemaphore, MODE_SPIN", [](Beats& b, const Options& o) { runSemaphore(b, o, brvUtils::TimedSemaphore::MODE_SPIN); }},
}};

Table histogram(const std::vector<double>& sorted)
{
    constexpr std::array<double, 14> limits{1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, HUGE_VAL};
    constexpr double widest = 40;
    Table table{"histogram", {{"from_us", "FROM us"}, {"to_us", "TO us"}, {"beats", "BEATS"}, {"bar", ""}}, {}, "no beat came", "Lateness"};
    double from = 0;
    auto begin = sorted.begin();
    for (const double to : limits) {
        const auto end = std::lower_bound(begin, sorted.end(), to);
        const auto count = end - begin;
        if (count > 0) {
            // Logarithmic: single late beats are what one looks for.
            const double length = widest * std::log1p(static_cast<double>(count)) / std::log1p(static_cast<double>(sorted.size()));
            table.rows.push_back({from, std::isinf(to) ? Cell(nullptr, "more") : Cell(to), count, std::string(static_cast<std::size_t>(std::max(1.0, length)), '#')});
        }
        from = to;
        begin = end;
    }
    return table;
}

int measure(Output& output, const Options& options)
{
    const auto source = std::find_if(sources.begin(), sources.end(), [&](const Source& known) { return known.name == options.source; });
    const double count = options.seconds / options.period;
    if (source == sources.end() || !(count >= 1 && count <= 100e6)) {
        throw Fault("the time is to hold 1 to 100 million periods");
    }
    Beats beats(options.period, static_cast<std::size_t>(count));
    {
        const Busy busy(options.busy);
        source->run(beats, options);
    }
    const std::vector<double> sorted = beats.log.latenesses();
    const auto at = [&](double part) { return Cell(percentile(sorted, part), fmt::format("{:.1f}", percentile(sorted, part))); };
    output.show({Fields{"", {{{"source", "Source"}, source->name},
                                {{"meaning", "That is"}, source->what},
                                {{"period_s", "Period, s"}, options.period},
                                {{"beats", "Beats"}, sorted.size()},
                                {{"missed", "Left out"}, beats.missed},
                                {{"busy", "Processors busy"}, options.busy},
                                {{"scheduling", "Beating thread"}, beats.standing},
                                {{"clock", "Clock"}, brvUtils::steadyClockName()}}, ""},
        Fields{"lateness_us", {{{"median", "Median, us"}, at(0.5)}, {{"p90", "90 %, us"}, at(0.9)}, {{"p99", "99 %, us"}, at(0.99)},
                                  {{"p999", "99.9 %, us"}, at(0.999)}, {{"maximum", "Maximum, us"}, at(1)}}, ""},
        histogram(sorted)});
    return sorted.empty() ? somethingIsWrong : good;
}

} // namespace

void addJitter(Commands& commands)
{
    const auto options = std::make_shared<Options>();
    CLI::App& command = commands.add(commands.top(), {"jitter", "Measures how late the timers of this computer beat",
                                                         {"brv jitter", "brv jitter --period 500us --seconds 2 --source spin --busy", "brv jitter --json"},
                                                         "Beat number k is due k periods after the start; lateness is counted from there. The bars are\nlogarithmic, so that single late beats show."},
        [options](Output& output) { return measure(output, *options); });
    const std::map<std::string, double> units{{"us", 1e-6}, {"ms", 1e-3}, {"s", 1.0}};
    command.add_option("--period", options->period, "With its unit: us, ms or s; by default 1ms")
        ->transform(CLI::AsNumberWithUnit(units, CLI::AsNumberWithUnit::UNIT_REQUIRED))->type_name("TIME");
    command.add_option("--seconds", options->seconds, "How long")->check(CLI::Range(0.001, 86400.0))->capture_default_str();
    std::vector<std::string> names;
    for (const Source& source : sources) {
        names.emplace_back(source.name);
    }
    command.add_option("--source", options->source, "What beats: timer, spin, yield, semaphore, semaphore-yield or semaphore-spin")
        ->check(CLI::IsMember(names))->type_name("SOURCE")->capture_default_str();
    command.add_flag("--busy", options->busy, "Keeps all processors busy meanwhile");
    commands.completes("SOURCE", [names] { return names; });
}

} // namespace brvTool
