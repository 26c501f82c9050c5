// How long the exchange of a part takes over the software card, beside a file mapping and beside the copies and checksums
// alone; how soon interrupts arrive; what checksums and ports cost.

#include "brvUtils/ipc/CardSegment_benchmark.h"
#include "brvUtils/ipc/Checksum_benchmark.h"
#include "brvUtils/ipc/InterruptDelivery_benchmark.h"
#include "brvUtils/ipc/Ports_benchmark.h"
#include "brvUtils/ipc/internal/Checksum.h"
#include "testing/CapturedOutput.h"
#include "testing/Interleaved.h"
#include "testing/UniqueName.h"

#include <iostream>

namespace reflective {

using namespace brvTesting;

namespace {

/// Nothing but the copies and the checksums.
class Limit
{
public:
    Limit(const std::string& name, std::size_t size)
        : shm_(name.c_str(), size + sizeof(std::int32_t), 0, true)
        , block_(size, 'b')
    {
    }
    void put()
    {
        std::memcpy(shm_.getPtr(), block_.data(), block_.size());
        const std::int32_t sum = brvUtils::additiveChecksum(block_.data(), block_.size());
        std::memcpy(sumPlace(), &sum, sizeof sum);
    }
    void get()
    {
        std::memcpy(block_.data(), shm_.getPtr(), block_.size());
        const std::int32_t sum = brvUtils::additiveChecksum(block_.data(), block_.size());
        wrong_ += std::memcmp(sumPlace(), &sum, sizeof sum) != 0;
    }

private:
    char* sumPlace() const { return static_cast<char*>(shm_.getPtr()) + block_.size(); }

    brvUtils::ShmWin32 shm_;
    std::vector<char> block_;
    volatile int wrong_ = 0; // else nobody would have to look
};

template <typename Exchanger>
Contender contender(const char* name, Exchanger& exchanger)
{
    return {name, [&exchanger](std::uint64_t iterations) {
                return nanosecondsOf([&] {
                    for (std::uint64_t i = 0; i < iterations; ++i) {
                        exchanger.put();
                        exchanger.get();
                    }
                });
            }};
}

template <typename Exchanger>
BenchmarkRow putAndGet(const std::string& row, const std::string& name, std::size_t size, Exchanger& ours)
{
    Segment mapping(brvUtils::ShmWin32::New, name + "f", size);
    Limit limit(name + "l", size);
    const std::vector<double> times = medianPerIteration({
        contender("ours", ours),
        contender("mapping", mapping),
        contender("limit", limit),
    }, {31, std::chrono::milliseconds(20)});
    return {row, "ns", times[0], {{"file mapping", times[1]}}, times[2]};
}

BenchmarkRow polling(const std::string& sizeName, std::size_t size)
{
    const std::string name = uniqueName("bench");
    Segment ours(onCard<ownNode, 0>, name, size);
    return putAndGet("put + get, " + sizeName + ", polling", name, size, ours);
}

BenchmarkRow byInterrupt(const std::string& sizeName, std::size_t size)
{
    const std::string name = uniqueName("bench");
    SharedByInterrupt ours(name, size);
    return putAndGet("put + get, " + sizeName + ", by interrupt", name, size, ours);
}

void addRows(BenchmarkTable& table)
{
    table.add(polling("64 B", 64));
    table.add(polling("1 KiB", 1024));
    table.add(polling("64 KiB", 65536));
    table.add(byInterrupt("64 B", 64));
    table.add(byInterrupt("1 KiB", 1024));
    table.add(byInterrupt("64 KiB", 65536));
    addDeliveryRows(table);
    addChecksumRows(table);
    addPortRows(table); // last, since by now nothing of the library is open
}

} // namespace

} // namespace reflective

int main(int argc, char** argv)
{
    if (const auto code = brvTesting::runAsChild(argc, argv)) {
        return *code;
    }
    brvTesting::BenchmarkTable table(argc, argv);
    std::string problem;
    {
        const brvTesting::CapturedOutput quiet; // the library tells of each segment
        try {
            reflective::addRows(table);
        } catch (const std::exception& error) {
            problem = quiet.err() + error.what();
        }
    }
    if (!problem.empty()) {
        std::cerr << problem << "\nbench_reflective: the software card has to be found; see scripts/bench\n";
        return 1;
    }
    return table.finish();
}
