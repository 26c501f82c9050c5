#include "brvUtils/ipc/ShmVmic.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/os/ReflectiveMemory.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <Utilities/ConfigFile.h>
#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>

// How segments are opened, on a driver that fails where a test wants it. Each test has a process of its own, into which the
// driver is loaded anew.

namespace brvUtils {
namespace {

using brvTesting::CapturedOutput;
using brvTesting::Child;
using brvTesting::EnvironmentGuard;
using testing::EndsWith;
using testing::HasSubstr;

constexpr size_t size = 1000;
const std::string library = os::reflectiveMemoryLibrary;
const std::string device = os::reflectiveMemoryDevicePrefix;

Utilities::ConfigFile section(const brvTesting::TemporaryFolder& folder, const std::string& entries)
{
    folder.write("shm.cfg", "[Ring]\n" + entries);
    Utilities::ConfigFile file(folder.file("shm.cfg"));
    file.setSection("Ring");
    return file;
}

struct ShmVmicOpening : testing::Test
{
    struct Outcome
    {
        bool opened;
        std::string out; ///< What was told until then, and on the destruction.
        std::string err;
    };

    Outcome open(const std::string& entries, short version = 0) const
    {
        Utilities::ConfigFile file = section(folder, entries);
        const CapturedOutput captured;
        bool opened = false;
        {
            const ShmVmic shm("Ring", size, version, file);
            opened = shm.getPtr() != nullptr;
        }
        return {opened, captured.out(), captured.err()};
    }

    const brvTesting::TemporaryFolder folder;
};

TEST_F(ShmVmicOpening, TellsOfEachStepInOrder)
{
    const Outcome outcome = open("BaseAddress = 0x10\nInterrupt = 3\n", 2);
    EXPECT_TRUE(outcome.opened);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
        "[SHM VMIC] Loading library \"" + library + "\"...\n[SHM VMIC] Library \"" + library + "\" loaded successfully\n"
        "RFM2gOpen\n[SHM VMIC] Device " + device + "1 opened\n"
        "RFM2gCheckRingCont\n"
        "[SHM VMIC] Ring continuity checked\n"
        "RFM2gNodeID\n"
        "[SHM VMIC] Node id: 7\n"
        "RFM2gFirst\n"
        "RFM2gSize\n"
        "[SHM VMIC] First byte: 0, size: 64 Mb\n"
        "[SHM VMIC] SHM Ring_2 size: 1000 bytes\n"
        "[SHM VMIC] Listening interrupt 3\n"
        "RFM2gEnableEvent(3)\n"
        "RFM2gClearEvent(3)\n"
        "RFM2gEnableEventCallback(3)\n"
        "RFM2gClose\n");

    const Outcome polling = open("BaseAddress=10\nInterrupt=0\nDeviceId = 12\n");
    EXPECT_TRUE(polling.opened);
    EXPECT_THAT(polling.out, testing::StartsWith("RFM2gOpen\n[SHM VMIC] Device " + device + "12 opened\n")) << "the library is loaded once";
    EXPECT_THAT(polling.out, EndsWith("[SHM VMIC] SHM Ring size: 1000 bytes\n[SHM VMIC] Not using interrupt\nRFM2gClose\n"));
}

TEST_F(ShmVmicOpening, StopsAtAnyFailureOfTheDriverAndClosesTheCard)
{
    for (const std::string function : {"RFM2gOpen", "RFM2gCheckRingCont", "RFM2gNodeID", "RFM2gFirst", "RFM2gSize", "RFM2gEnableEvent",
             "RFM2gClearEvent", "RFM2gEnableEventCallback"}) {
        const EnvironmentGuard fault("FAULTY_DRIVER", function + "=22");
        const Outcome outcome = open("BaseAddress=0\n");
        EXPECT_FALSE(outcome.opened) << function;
        EXPECT_EQ(outcome.err, "[SHM VMIC] the driver's own words\n") << function;
        const bool isOfEvents = function.find("Event") != std::string::npos;
        EXPECT_THAT(outcome.out, EndsWith(function + (isOfEvents ? "(1)\n" : "\n") + (function == "RFM2gOpen" ? "" : "RFM2gClose\n")));
    }
    {
        const EnvironmentGuard enabled("FAULTY_DRIVER", "RFM2gEnableEvent=32");
        EXPECT_TRUE(open("BaseAddress=0\n").opened) << "that somebody enabled the event before is no failure";
    }
    const EnvironmentGuard fault("FAULTY_DRIVER", "RFM2gOpen=77");
    EXPECT_EQ(open("BaseAddress=0\n").err, "[SHM VMIC] Unknown status 77\n") << "for which the driver has no words";
}

TEST_F(ShmVmicOpening, FillsTheCardToTheLastByteAndNotBeyond)
{
    const EnvironmentGuard first("FAULTY_DRIVER_FIRST", "256");
    const EnvironmentGuard cardSize("FAULTY_DRIVER_SIZE", "4096"); // usable up to 4352, as the driver's answers are read
    const std::string refusal = "[SHM VMIC] Address range is out of VMIC area\n";
    EXPECT_TRUE(open("BaseAddress=100\n").opened);
    EXPECT_EQ(open("BaseAddress=FF\n").err, refusal);
    EXPECT_TRUE(open("BaseAddress=918\n").opened); // 4352 - 1024 - 1000 = 2328
    EXPECT_EQ(open("BaseAddress=919\n").err, refusal);
    EXPECT_EQ(open("BaseAddress=FFFFFFFF\n").err, refusal);
}

TEST_F(ShmVmicOpening, TakesItsKeysAsTheyAreOrRefusesThem)
{
    for (const char* address : {"BaseAddress=1aB0\n", "BaseAddress = 0x1AB0\n", "BaseAddress=0X1ab0\n"}) {
        EXPECT_TRUE(open(address).opened) << address;
    }
    for (const char* address : {"", "BaseAddress=\n", "BaseAddress=0x\n", "BaseAddress=12G4\n", "BaseAddress=-1\n", "BaseAddress=100000000\n"}) {
        EXPECT_THROW(open(address), ConfigurationError) << address;
    }
    for (const char* interrupt : {"Interrupt=5\n", "Interrupt=-1\n", "Interrupt=two\n", "Interrupt=\n"}) {
        const Outcome outcome = open(std::string("BaseAddress=0\n") + interrupt);
        EXPECT_FALSE(outcome.opened) << interrupt;
        EXPECT_EQ(outcome.err, "[SHM VMIC] Bad interrupt number specified\n") << interrupt;
    }
    EXPECT_THAT(open("BaseAddress=0\n").out, HasSubstr("Listening interrupt 1\n")) << "unless told otherwise";
}

TEST_F(ShmVmicOpening, LeavesAnInterruptToWhoHasItFirst)
{
    Utilities::ConfigFile file = section(folder, "BaseAddress=0\nInterrupt=2\n");
    std::optional<CapturedOutput> captured(std::in_place);
    auto first = std::make_unique<ShmVmic>("First", size, short{4}, file);
    for (int i = 0; i < 2; ++i) {
        const ShmVmic second("Second", size, 0, file);
        EXPECT_EQ(second.getPtr(), nullptr);
    }
    const std::string refusal = "[SHM VMIC] Interrupt number 2 already used by First_4\n";
    EXPECT_EQ(captured->err(), refusal + refusal) << "the refused one does not take the first one's place with it";
    first.reset();
    EXPECT_NE(ShmVmic("Second", size, 0, file).getPtr(), nullptr);
    captured.reset();
}

BRV_CHILD(segmentOpener)
{
    const brvTesting::TemporaryFolder folder;
    Utilities::ConfigFile file = section(folder, "BaseAddress=0\n");
    const std::unique_ptr<IShm> shm(ShmVmic::New("Ring", size, 0, file));
    return shm == nullptr ? 3 : 0;
}

TEST(ShmVmicDriver, ThatIsMissingOrNoLibraryOrLacksAFunctionIsToldOf)
{
    const brvTesting::TemporaryFolder damaged;
    damaged.write(library, "no library");
    const std::string failure = "[SHM VMIC] Failed to load dll \"" + library + "\"\n";
    struct
    {
        std::string folder;
        std::string complaint;
    } const cases[] = {
        {FOLDER_WITHOUT_DRIVER, failure},
        {damaged.path().string(), failure},
        {INCOMPLETE_DRIVER_FOLDER, "Function RFM2gClearEvent not found\n"},
    };
    for (const auto& driver : cases) {
        Child child("segmentOpener", {}, {{LIBRARY_PATH_VARIABLE, driver.folder}});
        child.expectLine("[SHM VMIC] Loading library \"" + library + "\"...");
        child.expectExit(3);
        EXPECT_EQ(child.err(), driver.complaint);
    }
}

} // namespace
} // namespace brvUtils
