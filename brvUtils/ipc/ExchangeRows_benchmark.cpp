#include "brvUtils/ipc/ExchangeRows_benchmark.h"

#include "brvUtils/ipc/Exchangers_benchmark.h"
#include "testing/Child.h"
#include "testing/Interleaved.h"
#include "testing/UniqueName.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <optional>
#include <thread>

namespace exchange {

using namespace brvTesting;

namespace {

using std::chrono::steady_clock;

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// How many exchanges one process makes while the time lasts.
template <typename Exchanger>
long exchangesIn(std::chrono::milliseconds time, Exchanger& exchanger)
{
    long count = 0;
    const auto end = steady_clock::now() + time;
    while (steady_clock::now() < end) {
        for (int i = 0; i < 100; ++i) {
            exchanger.put();
            exchanger.get();
        }
        count += 100;
    }
    return count;
}

constexpr std::chrono::milliseconds contentionTime{200};

template <typename Exchanger>
int contend(const std::string& name)
{
    Exchanger exchanger(name, 64);
    childSay("ready");
    while (childHear()) {
        childSay(std::to_string(exchangesIn(contentionTime, exchanger)));
    }
    return 0;
}

BRV_CHILD(contendOurs) { return contend<Ours>(arguments[0]); }
BRV_CHILD(contendBoost) { return contend<Boost>(arguments[0]); }
BRV_CHILD(contendFutex) { return contend<Futex>(arguments[0]); }
BRV_CHILD(contendLimit) { return contend<Limit>(arguments[0]); }

/// Nanoseconds per exchange while two processes of that kind are at it.
class Contention
{
public:
    explicit Contention(const char* kind)
        : name_(uniqueName("bench"))
        , one_(kind, {name_})
        , two_(kind, {name_})
    {
        one_.awaitLine("ready");
        two_.awaitLine("ready");
    }
    ~Contention()
    {
        // Each ends by itself: what outlives its process is removed.
        for (Child* child : {&one_, &two_}) {
            child->closeInput();
            child->waitForEnd();
        }
    }
    double run()
    {
        one_.send("go");
        two_.send("go");
        const double count = std::stod(one_.readLine()) + std::stod(two_.readLine());
        return std::chrono::duration<double, std::nano>(contentionTime).count() / count;
    }

private:
    std::string name_;
    Child one_;
    Child two_;
};

// Semaphores by name, in four kinds.

struct OurSemaphore
{
    explicit OurSemaphore(const std::string& name)
        : semaphore(name.c_str(), false, true)
    {
    }
    void wait() { semaphore.ask(-1.0); }
    void post() { semaphore.free(); }
    brvUtils::SemaphoreWin32 semaphore;
};

struct BoostSemaphore
{
    explicit BoostSemaphore(const std::string& semaphoreName)
        : name(semaphoreName)
        , semaphore(bip::open_or_create, name.c_str(), 0)
    {
    }
    ~BoostSemaphore() { bip::named_semaphore::remove(name.c_str()); }
    void wait() { semaphore.wait(); }
    void post() { semaphore.post(); }
    std::string name;
    bip::named_semaphore semaphore;
};

/// A word in shared memory. Blocking: sleeps in a futex call, else looks for ever.
template <bool blocking>
struct WordSemaphore
{
    explicit WordSemaphore(const std::string& name)
        : shm(name.c_str(), sizeof(brvUtils::os::StateWord), 0, true)
    {
    }
    brvUtils::os::StateWord& word() { return *static_cast<brvUtils::os::StateWord*>(shm.getPtr()); }
    void wait()
    {
        std::uint64_t expected = 1;
        while (!word().compare_exchange_weak(expected, 0)) {
            if (blocking) {
                brvUtils::os::futexWait(word(), 0, nullptr);
            }
            expected = 1;
        }
    }
    void post()
    {
        word().store(1);
        if (blocking) {
            brvUtils::os::futexWakeAll(word());
        }
    }
    brvUtils::ShmWin32 shm;
};

template <typename Semaphore>
int answer(const std::string& name)
{
    Semaphore ping(name + "1");
    Semaphore pong(name + "2");
    childSay("ready");
    while (const auto order = childHear()) {
        for (long i = std::stol(*order); i > 0; --i) {
            ping.wait();
            pong.post();
        }
    }
    return 0;
}

BRV_CHILD(answerOurs) { return answer<OurSemaphore>(arguments[0]); }
BRV_CHILD(answerBoost) { return answer<BoostSemaphore>(arguments[0]); }
BRV_CHILD(answerFutex) { return answer<WordSemaphore<true>>(arguments[0]); }
BRV_CHILD(answerWord) { return answer<WordSemaphore<false>>(arguments[0]); }

/// Median nanoseconds there and back.
template <typename Semaphore>
class PingPong
{
public:
    explicit PingPong(const char* kind)
        : name_(uniqueName("bench"))
        , ping_(name_ + "1")
        , pong_(name_ + "2")
        , child_(kind, {name_})
    {
        child_.awaitLine("ready");
    }
    double run()
    {
        constexpr int rounds = 2000;
        child_.send(std::to_string(rounds));
        std::vector<double> times;
        for (int i = 0; i < rounds; ++i) {
            times.push_back(nanosecondsOf([&] {
                ping_.post();
                pong_.wait();
            }));
        }
        return median(std::move(times));
    }

private:
    std::string name_;
    Semaphore ping_;
    Semaphore pong_;
    Child child_;
};

template <typename Semaphore>
int releaseEvery5ms(const std::string& name)
{
    Semaphore semaphore(name);
    Semaphore next(name + "n");
    childSay("ready");
    while (const auto order = childHear()) {
        for (long i = std::stol(*order); i > 0; --i) {
            next.wait(); // two releases might count as one
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            semaphore.post();
        }
    }
    return 0;
}

BRV_CHILD(releaseOurs) { return releaseEvery5ms<OurSemaphore>(arguments[0]); }
BRV_CHILD(releaseBoost) { return releaseEvery5ms<BoostSemaphore>(arguments[0]); }
BRV_CHILD(releaseFutex) { return releaseEvery5ms<WordSemaphore<true>>(arguments[0]); }

/// Processor nanoseconds that the waiting process spends per wait.
template <typename Semaphore>
class LongWait
{
public:
    explicit LongWait(const char* kind)
        : name_(uniqueName("bench"))
        , semaphore_(name_)
        , next_(name_ + "n")
        , child_(kind, {name_})
    {
        child_.awaitLine("ready");
    }
    double run()
    {
        constexpr int rounds = 25;
        child_.send(std::to_string(rounds));
        const std::clock_t start = std::clock();
        for (int i = 0; i < rounds; ++i) {
            next_.post();
            semaphore_.wait();
        }
        return static_cast<double>(std::clock() - start) * 1e9 / CLOCKS_PER_SEC / rounds;
    }

private:
    std::string name_;
    Semaphore semaphore_;
    Semaphore next_;
    Child child_;
};

/// Runs each in turns. \return the medians.
template <typename... Subject>
std::vector<double> inTurns(int rounds, Subject&&... subjects)
{
    std::vector<std::vector<double>> results(sizeof...(subjects));
    for (int round = 0; round < rounds; ++round) {
        std::size_t i = 0;
        ((results[i++].push_back(subjects.run())), ...);
    }
    std::vector<double> medians;
    for (std::vector<double>& values : results) {
        medians.push_back(median(std::move(values)));
    }
    return medians;
}

} // namespace

BenchmarkRow contendedExchange()
{
    const std::vector<double> times = inTurns(7, Contention("contendOurs"), Contention("contendBoost"), Contention("contendFutex"), Contention("contendLimit"));
    return {"put + get, 64 B, two processes on one part", "ns", times[0], {{"boost", times[1]}, {"bare futex", times[2]}}, times[3]};
}

BenchmarkRow pingPong()
{
    // The word that never sleeps would take a processor from the others while it waits for its order: it runs for itself.
    const std::vector<double> times = inTurns(7, PingPong<OurSemaphore>("answerOurs"), PingPong<BoostSemaphore>("answerBoost"), PingPong<WordSemaphore<true>>("answerFutex"));
    const std::vector<double> limit = inTurns(7, PingPong<WordSemaphore<false>>("answerWord"));
    return {"semaphore there and back, median", "us", times[0] / 1000, {{"boost", times[1] / 1000}, {"bare futex", times[2] / 1000}}, limit[0] / 1000};
}

BenchmarkRow processorTimeOfAWait()
{
    const std::vector<double> times = inTurns(36, LongWait<OurSemaphore>("releaseOurs"), LongWait<BoostSemaphore>("releaseBoost"), LongWait<WordSemaphore<true>>("releaseFutex"));
    return {"processor time of a wait of 5 ms", "us", times[0] / 1000, {{"boost", times[1] / 1000}, {"bare futex", times[2] / 1000}}};
}

} // namespace exchange
