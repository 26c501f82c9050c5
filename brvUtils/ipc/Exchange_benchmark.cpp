// How long the exchange of a part takes, beside the same done with Boost.Interprocess, with a bare futex lock and with
// nothing but compare-and-swap.

#include "brvUtils/ipc/ExchangeRows_benchmark.h"
#include "brvUtils/ipc/Exchangers_benchmark.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/Interleaved.h"
#include "testing/UniqueName.h"

#include <memory>

namespace exchange {

using namespace brvTesting;

namespace {

template <typename Exchanger>
Contender contender(const char* name, const std::shared_ptr<Exchanger>& exchanger)
{
    return {name, [exchanger](std::uint64_t iterations) {
                return nanosecondsOf([&] {
                    for (std::uint64_t i = 0; i < iterations; ++i) {
                        exchanger->put();
                        exchanger->get();
                    }
                });
            }};
}

BenchmarkRow putAndGet(const std::string& row, std::size_t size, int partCount)
{
    const std::string name = uniqueName("bench");
    const std::vector<double> times = medianPerIteration({
        contender("ours", std::make_shared<Ours>(name, size, partCount)),
        contender("boost", std::make_shared<Boost>(name + "b", size)),
        contender("futex", std::make_shared<Futex>(name + "f", size)),
        contender("limit", std::make_shared<Limit>(name + "l", size)),
    }, {31, std::chrono::milliseconds(20)});
    return {row, "ns", times[0], {{"boost", times[1]}, {"bare futex", times[2]}}, times[3]};
}

BenchmarkRow attach()
{
    const std::string name = uniqueName("bench");
    constexpr int partCount = 255;
    const Ours creator(name, 64, partCount);
    const Boost memory(name + "b", 64);
    std::vector<std::unique_ptr<bip::named_semaphore>> semaphores;
    const auto partName = [&](int i) { return name + "b" + std::to_string(i); };
    for (int i = 0; i < partCount; ++i) {
        semaphores.push_back(std::make_unique<bip::named_semaphore>(bip::open_or_create, partName(i).c_str(), 1));
    }
    const std::vector<double> times = medianPerIteration({
        {"ours", [&](std::uint64_t iterations) {
             return nanosecondsOf([&] {
                 for (std::uint64_t i = 0; i < iterations; ++i) {
                     const Ours opener(name, 64, partCount);
                 }
             });
         }},
        {"boost", [&](std::uint64_t iterations) {
             return nanosecondsOf([&] {
                 for (std::uint64_t i = 0; i < iterations; ++i) {
                     const Boost opener(name + "b", 64, false);
                     std::deque<bip::named_semaphore> opened;
                     for (int part = 0; part < partCount; ++part) {
                         opened.emplace_back(bip::open_or_create, partName(part).c_str(), 1);
                     }
                 }
             });
         }},
    });
    for (int i = 0; i < partCount; ++i) {
        bip::named_semaphore::remove(partName(i).c_str());
    }
    return {"attach to 255 parts and leave", "ms", times[0] / 1e6, {{"boost", times[1] / 1e6}}};
}

} // namespace

} // namespace exchange

int main(int argc, char** argv)
{
    if (const auto code = brvTesting::runAsChild(argc, argv)) {
        return *code;
    }
    brvTesting::BenchmarkTable table(argc, argv);
    {
        const brvTesting::CapturedOutput quiet; // the library tells of each segment
        table.add(exchange::putAndGet("put + get, 64 B", 64, 1));
        table.add(exchange::putAndGet("put + get, 64 B, 255th part", 64, 255));
        table.add(exchange::putAndGet("put + get, 1 KiB", 1024, 1));
        table.add(exchange::putAndGet("put + get, 64 KiB", 65536, 1));
        table.add(exchange::attach());
        table.add(exchange::contendedExchange());
        table.add(exchange::pingPong());
        table.add(exchange::processorTimeOfAWait());
    }
    return table.finish();
}
