#include "brvUtils/ipc/InterruptDelivery_benchmark.h"

#include "brvUtils/ipc/CardSegment_benchmark.h"
#include "testing/UniqueName.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace reflective {

using namespace brvTesting;

namespace {

using std::chrono::steady_clock;

constexpr int interrupt = 1;
constexpr char readersFirst = 'c';

std::int64_t now()
{
    return std::chrono::nanoseconds(steady_clock::now().time_since_epoch()).count();
}

/// Waits, asleep now and then, for at most five seconds.
template <typename Condition>
bool await(Condition&& condition)
{
    for (const auto end = steady_clock::now() + std::chrono::seconds(5); steady_clock::now() < end;) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return false;
}

std::string mailboxName(const std::string& name)
{
    return name + "m";
}

Mailbox* ownMailbox = nullptr;

/// The driver's thread frees the semaphore of a part when it has refreshed it.
class Witness : public brvUtils::SemaphoreWin32
{
public:
    using SemaphoreWin32::SemaphoreWin32;
    bool free() override
    {
        if (ownMailbox != nullptr) {
            ownMailbox->woken = now();
        }
        return SemaphoreWin32::free();
    }
    static brvUtils::ISemaphore* make(char const* name, bool initiallyFree, bool withInstance) { return new Witness(name, initiallyFree, withInstance); }
};

BRV_CHILD(readByInterrupt)
{
    const std::string& name = arguments[0];
    const brvUtils::ShmWin32 mailbox(mailboxName(name).c_str(), sizeof(Mailbox), 0, false);
    Segment segment(onCard<otherNode, interrupt>, name, std::stoul(arguments[1]), Witness::make);
    segment.bytes()[0] = readersFirst;
    segment.put();
    ownMailbox = static_cast<Mailbox*>(mailbox.getPtr());
    childSay("ready");
    childHear();
    ownMailbox = nullptr;
    return 0;
}

BRV_CHILD(readByFutex)
{
    const brvUtils::ShmWin32 shm(mailboxName(arguments[0]).c_str(), sizeof(Mailbox), 0, false);
    Mailbox& mailbox = *static_cast<Mailbox*>(shm.getPtr());
    childSay("ready");
    while (const auto order = childHear()) {
        for (long i = std::stol(*order); i > 0; --i) {
            while (mailbox.word == 0) {
                brvUtils::os::futexWait(mailbox.word, 0, nullptr);
            }
            const std::int64_t woken = now();
            mailbox.word = 0;
            mailbox.woken = woken;
        }
    }
    return 0;
}

/// Nanoseconds from just before `send` until the mailbox tells of it, each with the reader asleep before.
template <typename Send>
void measure(int rounds, Mailbox& mailbox, std::vector<double>& times, Send&& send)
{
    for (int i = 0; i < rounds; ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(300));
        mailbox.woken = 0;
        const std::int64_t start = now();
        send();
        if (!await([&] { return mailbox.woken != 0; })) {
            throw std::runtime_error("a wake was lost");
        }
        times.push_back(static_cast<double>(mailbox.woken - start));
    }
}

/// Below which that share of the values is.
double quantile(std::vector<double>& values, double share)
{
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

} // namespace

SharedByInterrupt::SharedByInterrupt(const std::string& name, std::size_t size)
    : mailbox_(mailboxName(name).c_str(), sizeof(Mailbox), 0, false)
    , segment_(onCard<ownNode, interrupt>, name, size)
    , other_("readByInterrupt", {name, std::to_string(size)}, {{"STUDIO_INSTANCE", "reader"}})
{
    const auto hasReadersPart = [this] {
        segment_.get();
        return segment_.bytes()[0] == readersFirst;
    };
    if (!other_.awaitLine("ready") || !await(hasReadersPart)) {
        throw std::runtime_error("no interrupt of the other node came");
    }
}

void addDeliveryRows(BenchmarkTable& table)
{
    SharedByInterrupt card(uniqueName("bench"), 64);
    const std::string name = uniqueName("bench");
    const brvUtils::ShmWin32 shm(mailboxName(name).c_str(), sizeof(Mailbox), 0, false);
    Mailbox& bare = *static_cast<Mailbox*>(shm.getPtr());
    Child reader("readByFutex", {name});
    reader.awaitLine("ready");

    std::vector<double> ours;
    std::vector<double> limit;
    for (int turn = 0; turn < 20; ++turn) {
        constexpr int rounds = 200;
        measure(rounds, card.mailbox(), ours, [&] { card.put(); });
        reader.send(std::to_string(rounds));
        measure(rounds, bare, limit, [&] {
            bare.word = 1;
            brvUtils::os::futexWakeAll(bare.word);
        });
    }
    reader.closeInput();
    reader.waitForEnd();
    table.add({"put of 64 B until the reader has it, median (limit: bare futex)", "us", quantile(ours, 0.5) / 1000, {}, quantile(limit, 0.5) / 1000});
    table.add({"put of 64 B until the reader has it, p99 (limit: bare futex)", "us", quantile(ours, 0.99) / 1000, {}, quantile(limit, 0.99) / 1000});
}

} // namespace reflective
