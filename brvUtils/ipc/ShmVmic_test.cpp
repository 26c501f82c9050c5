#include "brvUtils/ipc/ShmVmic.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/CompositeShm_test.h"
#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/os/ReflectiveMemory.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <Utilities/ConfigFile.h>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

// Segments on the software card. Nodes of the ring are this process under several numbers, and children.

namespace brvUtils {
namespace {

using brvTesting::CapturedOutput;
using brvTesting::Child;
using brvTesting::childHear;
using brvTesting::childSay;
using brvTesting::EnvironmentGuard;
using testing::HasSubstr;

constexpr size_t size = 100; // of composites, to which the version record is added
constexpr rfm2g::Offset base = 0x1000;
constexpr rfm2g::Offset checksums = base + size + 2;

/// The card as its driver shows it, under a node number of its own.
class Card
{
public:
    explicit Card(int node)
    {
        const EnvironmentGuard number("RFM2G_NODE", std::to_string(node));
        std::string device = std::string(os::reflectiveMemoryDevicePrefix) + "1";
        EXPECT_EQ(find<rfm2g::Open>("RFM2gOpen")(device.data(), &handle_), rfm2g::Status::success);
    }
    ~Card() { find<rfm2g::Close>("RFM2gClose")(&handle_); }
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;

    template <typename Value>
    Value read(rfm2g::Offset from) const
    {
        Value value{};
        EXPECT_EQ(find<rfm2g::Read>("RFM2gRead")(handle_, from, &value, sizeof value), rfm2g::Status::success);
        return value;
    }

    template <typename Value>
    void write(rfm2g::Offset to, Value value) const
    {
        EXPECT_EQ(find<rfm2g::Write>("RFM2gWrite")(handle_, to, &value, sizeof value), rfm2g::Status::success);
    }

    /// As a composite segment of that layout version would, had it made the card.
    void writeVersion(std::int16_t version) const
    {
        write(base, version);
        write(checksums, std::int32_t{version}); // small numbers are their own sum
    }

    void interrupt(int event, std::uint32_t data) const
    {
        find<rfm2g::SendEvent>("RFM2gSendEvent")(handle_, rfm2g::allNodes, static_cast<rfm2g::Event>(event), data);
    }

private:
    template <typename Function>
    static Function* find(const char* name)
    {
        static os::DynamicLibrary* const library = os::openLibrary(os::reflectiveMemoryLibrary).opened;
        return reinterpret_cast<Function*>(os::librarySymbol(library, name));
    }

    rfm2g::Handle handle_ = nullptr;
};

std::string configPath; // of the file that newCardShm reads

/// A factory for composites.
IShm* newCardShm(char const* name, size_t bytes, short version, bool)
{
    Utilities::ConfigFile file(configPath);
    file.setSection("Card");
    return ShmVmic::New(name, bytes, version, file);
}

/// A segment of one number, seen from one node.
struct CardComposite : Composite
{
    CardComposite(const std::string& name, short version)
        : Composite(name, size, version, newCardShm)
    {
        addPart(number);
    }

    Number number{7};
};

struct ShmVmicTest : testing::Test
{
    void configure(const std::string& entries)
    {
        folder.write("shm.cfg", "[Card]\nBaseAddress=1000\n" + entries);
        configPath = folder.file("shm.cfg");
    }

    std::unique_ptr<CardComposite> onNode(int node, short version = 0) const
    {
        const EnvironmentGuard number("RFM2G_NODE", std::to_string(node));
        return std::make_unique<CardComposite>(name, version);
    }

    const brvTesting::TemporaryFolder folder;
    const EnvironmentGuard rings{"RFM2G_FOLDER", folder.file("rings")};
    const EnvironmentGuard ring{"RFM2G_RING", "test"};
    const std::string name = brvTesting::uniqueName();
};

TEST_F(ShmVmicTest, MovesPartsBetweenNodesByPolling)
{
    configure("Interrupt=0\n");
    const CapturedOutput captured;
    const auto first = onNode(1);
    const auto second = onNode(2);
    EXPECT_FALSE(first->isCreated());
    first->number.value = -2;
    EXPECT_TRUE(first->put(first->number, 1.0));
    EXPECT_TRUE(second->get(second->number, 1.0));
    EXPECT_EQ(second->number.value, -2);

    const Card card(3);
    EXPECT_EQ(card.read<std::int64_t>(base + 2), 0xFFFFFFFE) << "the part as the segment has it, behind the version record";
    EXPECT_EQ(card.read<std::int32_t>(checksums + 4), -2 - 1 - 1 - 1);
}

TEST_F(ShmVmicTest, KeepsWhatItHadWhileAPartHasNotArrivedWhole)
{
    configure("Interrupt=0\n");
    const CapturedOutput captured;
    auto reader = onNode(2);
    {
        const Card writer(1); // which is killed behind the bytes, before their checksum
        writer.write<std::int64_t>(base + 2, 5);
        EXPECT_TRUE(reader->get(reader->number, 1.0)) << "no failure";
        EXPECT_EQ(reader->number.value, 0);
        writer.write<std::int32_t>(checksums + 4, 5);
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(reader->get(reader->number, 1.0));
        EXPECT_EQ(reader->number.value, 5);
    }
    reader.reset();
    EXPECT_THAT(captured.out(), HasSubstr("[SHM VMIC] Block 0 read 1 times, 0% failed\n[SHM VMIC] Block 1 read 3 times, 33.3333% failed\n"));
}

TEST_F(ShmVmicTest, RefusesABlankCardUntilSomebodyHasWrittenTheVersion)
{
    configure("Interrupt=0\n");
    const CapturedOutput captured;
    EXPECT_THROW(onNode(1, 4), ConfigurationError);
    Card(1).writeVersion(4);
    EXPECT_NO_THROW(onNode(1, 4));
    configure("Interrupt=1\n");
    EXPECT_NO_THROW(onNode(1, 5)) << "nothing is read before the first interrupt";
}

BRV_CHILD(interruptedReader)
{
    configPath = arguments[0];
    CardComposite reader(arguments[1], 0);
    childSay("ready");
    int last = 0;
    while (const auto wanted = childHear()) {
        const int next = std::stoi(*wanted);
        while (reader.number.value != next) { // its deadline is the parent's
            reader.get(reader.number, 1.0);
            if (reader.number.value != last && reader.number.value != next) {
                return 3;
            }
        }
        last = next;
        childSay("got it");
    }
    return 0;
}

TEST_F(ShmVmicTest, RefreshesReadersOfOtherNodesByInterrupt)
{
    configure("Interrupt=4\n");
    const CapturedOutput captured;
    const auto writer = onNode(1);
    Child reader("interruptedReader", {configPath, name}, {{"RFM2G_NODE", "2"}});
    reader.awaitLine("ready");
    for (int value : {11, 12, 13}) {
        writer->number.value = value;
        EXPECT_TRUE(writer->put(writer->number, 1.0));
        reader.send(std::to_string(value));
        reader.awaitLine("got it");
    }
    writer->number.value = 0;
    EXPECT_TRUE(writer->get(writer->number, 1.0));
    EXPECT_EQ(writer->number.value, 0) << "a card does not interrupt itself";
    reader.closeInput();
    reader.expectExit(0);
}

/// Whether the part is refreshed on an interrupt soon; what is not to happen is given the time of one that is.
bool isRefreshed(CardComposite& reader, int value)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
        reader.get(reader.number, 1.0);
        if (reader.number.value == value) {
            return true;
        }
        std::this_thread::yield();
    }
    return false;
}

TEST_F(ShmVmicTest, DropsInterruptsThatConcernNoPartOrComeWhileThePartIsHeld)
{
    configure("Interrupt=2\n");
    const CapturedOutput captured;
    auto reader = onNode(1);
    const Card writer(2);
    const auto write = [&](int value) {
        writer.write<std::int64_t>(base + 2, value);
        writer.write<std::int32_t>(checksums + 4, value);
    };
    write(1);
    for (const std::uint32_t data : {2u, 255u, 256u, 257u, 0x80000001u, 0xFFFFFFFFu}) {
        writer.interrupt(2, data);
    }
    writer.interrupt(3, 1);
    write(2);
    writer.interrupt(2, 1); // comes behind those
    EXPECT_TRUE(isRefreshed(*reader, 2));

    EXPECT_TRUE(reader->getAccess(reader->number, 1.0));
    write(3);
    writer.interrupt(2, 1);
    // The callback says so when it gives up.
    const std::string complaint = std::string("Error waiting semaphore ") + reader->shmName() + " Part 7: WAIT_TIMEOUT";
    while (captured.err().find(complaint) == std::string::npos) {
        std::this_thread::yield();
    }
    reader->getWithoutProtect(reader->number, 0.0);
    EXPECT_EQ(reader->number.value, 2);
    EXPECT_TRUE(reader->releaseAccess(reader->number));
    reader.reset();
    EXPECT_THAT(captured.out(), HasSubstr("\n[SHM VMIC] Block 1 read 1 times, 0% failed\n"));
}

/// Interrupts without a pause, from a node of its own.
class Flood
{
public:
    ~Flood()
    {
        done_ = true;
        thread_.join();
    }

private:
    Card card_{2};
    std::atomic<bool> done_ = false;
    std::thread thread_{[this] {
        while (!done_) {
            card_.interrupt(1, 1);
        }
    }};
};

TEST_F(ShmVmicTest, ComesAndGoesAndDropsPartsWhileInterruptsFlow)
{
    configure("Interrupt=1\n");
    const CapturedOutput captured;
    const Flood flood;
    for (int i = 0; i < 100; ++i) {
        const auto segment = onNode(1);
        if (i % 2 == 0) {
            segment->remove(segment->number); // and its semaphore with it
        }
    }
}

BRV_CHILD(leaver)
{
    configPath = arguments[0];
    static CardComposite* volatile segment; // in reach, and open while the process ends
    segment = new CardComposite(arguments[1], 0);
    childSay(segment != nullptr ? "ready" : "");
    childHear();
    return 0;
}

TEST_F(ShmVmicTest, IsLeftOpenByAProcessThatEndsWhileInterruptsFlow)
{
    configure("Interrupt=1\n");
    const Flood flood;
    for (int i = 0; i < 5; ++i) {
        Child child("leaver", {configPath, name}, {{"RFM2G_NODE", "1"}});
        child.awaitLine("ready");
        child.send("end");
        child.expectExit(0);
    }
}

TEST_F(ShmVmicTest, RefusesIndicesBeyondItsTable)
{
    configure("Interrupt=0\n");
    const CapturedOutput captured;
    const std::unique_ptr<IShm> shm(newCardShm("Segment", 10, 0, true));
    ASSERT_NE(shm, nullptr);
    shm->describePart(256, 0, 1, nullptr);
    shm->describePart(255, 4, 7, nullptr);
    shm->afterWrite(300);
    EXPECT_FALSE(shm->beforeRead(256));
    EXPECT_TRUE(shm->beforeRead(255)) << "of a part without bytes the sum is 0, which is what the card holds";
    EXPECT_EQ(captured.err(),
        "[SHM VMIC] Trying to describe part 256, which is greater or equal to 256\n"
        "[SHM VMIC] Part 255 does not lie within Segment\n"
        "[SHM VMIC] Trying to write block 300, which is greater or equal to 256\n"
        "[SHM VMIC] Trying to read block 256, which is greater or equal to 256\n");
}

} // namespace
} // namespace brvUtils
