// How late beats come, what they cost, and how soon a thread is at work: beside bare calls of the system and Boost.Asio.
//
// A beat is due a whole number of periods after its source was started; see BeatLog. The processor time is that of the
// whole process, per beat: some sources look at the clock for a while before a beat, and pollers look all the time. The
// limit is the bare sleep with a timer slack of 1 ns. Where this user may give threads a higher priority TimerWin32 does,
// also in MODE_TIMER, and the peers do not: a first line says so.

#include "brvUtils/os/linux/BareBeats.h"
#include "brvUtils/time/BeatSources_benchmark.h"
#include "brvUtils/time/TimerRows_benchmark.h"
#include "testing/Child.h"

#include <iostream>
#include <string>
#include <thread>
#include <vector>

namespace timers {

using namespace brvTesting;

namespace {

/// Keeps the last processor busy until it is killed.
BRV_CHILD(busy)
{
    childSay(brvUtils::os::stayOnLastProcessor(true) ? "busy" : "there is no other processor");
    for (volatile unsigned count = 0;; count = count + 1) { }
}

struct Beats
{
    const char* text;
    std::int64_t period; ///< Nanoseconds.
    std::vector<BeatSource> ours;
    std::vector<BeatSource> peers;
};

struct Measure
{
    const char* text;
    double Lateness::*value;
};

constexpr Measure measures[] = {
    {"median", &Lateness::median},
    {"p99", &Lateness::percentile99},
    {"maximum", &Lateness::maximum},
    {"drift", &Lateness::drift},
    {"processor", &Lateness::processor},
};

/// All sources one after the other: there are not enough processors for several at a time.
std::vector<BenchmarkRow> beatsUnder(const char* load, const Beats& beats, double seconds)
{
    std::cerr << beats.text << ", " << load << '\n';
    const Lateness limit = measure(limitSource(), beats.period, seconds);
    std::vector<Lateness> peers;
    for (const BeatSource& peer : beats.peers) {
        peers.push_back(measure(peer, beats.period, seconds));
    }
    std::vector<BenchmarkRow> rows;
    for (const BeatSource& source : beats.ours) {
        const Lateness ours = measure(source, beats.period, seconds);
        for (const Measure& measure : measures) {
            BenchmarkRow row{std::string(source.name) + ", " + beats.text + ", " + load + ", " + measure.text, "us", ours.*measure.value};
            for (std::size_t i = 0; i < peers.size(); ++i) {
                row.peers.emplace_back(beats.peers[i].name, peers[i].*measure.value);
            }
            row.limit = limit.*measure.value;
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

std::vector<Beats> allBeats()
{
    const std::vector<BeatSource>& ours = ourSources();
    const std::vector<BeatSource>& peers = peerSources();
    return {
        {"0.25 ms", 250'000, {ours.front()}, {peers.front()}}, // which a poller gives
        {"1 ms", 1'000'000, ours, peers},
        {"5 ms", 5'000'000, ours, peers},
        {"10 ms", 10'000'000, ours, peers},
    };
}

std::vector<BenchmarkRow> beatsUnder(const char* load, double seconds)
{
    std::vector<BenchmarkRow> rows;
    for (const Beats& beats : allBeats()) {
        const std::vector<BenchmarkRow> measured = beatsUnder(load, beats, seconds);
        rows.insert(rows.end(), measured.begin(), measured.end());
    }
    return rows;
}

/// A process keeps the last processor busy, and nothing of this one runs there.
std::vector<BenchmarkRow> beatsBesideBusyProcess(double seconds)
{
    std::vector<BenchmarkRow> rows;
    std::thread([&] {
        Child other("busy");
        if (!other.expectLine("busy") || !brvUtils::os::stayOnLastProcessor(false)) {
            std::cerr << "there is no second processor to be busy\n";
            return;
        }
        rows = beatsUnder("busy", seconds);
    }).join();
    return rows;
}

void announce(double seconds)
{
    bool first = false;
    std::thread([&] { first = brvUtils::os::goFirst(); }).join();
    std::size_t runs = 0;
    for (const Beats& beats : allBeats()) {
        runs += 2 * (beats.ours.size() + beats.peers.size() + 1);
    }
    std::cerr << (first ? "this user's threads may go before all others, as those of TimerWin32 do\n"
                        : "this user's threads all have the same priority\n")
              << "about " << static_cast<int>(static_cast<double>(runs) * seconds + 1) << " s\n";
}

/// The rows of each source of ours together.
void addBeats(BenchmarkTable& table, double seconds)
{
    std::vector<BenchmarkRow> rows = beatsUnder("idle", seconds);
    const std::vector<BenchmarkRow> busy = beatsBesideBusyProcess(seconds);
    rows.insert(rows.end(), busy.begin(), busy.end());
    for (const BeatSource& source : ourSources()) {
        for (const BenchmarkRow& row : rows) {
            if (row.row.rfind(source.name, 0) == 0) {
                table.add(row);
            }
        }
    }
}

} // namespace

} // namespace timers

int main(int argc, char** argv)
{
    if (const auto code = brvTesting::runAsChild(argc, argv)) {
        return *code;
    }
    double seconds = 5;
    brvTesting::BenchmarkTable table(argc, argv, {{"--seconds", &seconds}});
    timers::announce(seconds);
    timers::addBeats(table, seconds);
    table.add(timers::threadStart());
    table.add(timers::isAlive());
    return table.finish();
}
