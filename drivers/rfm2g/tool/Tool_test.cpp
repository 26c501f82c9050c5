// The program as a user runs it, beside programs that have the card open.
#include "testing/Child.h"
#include "testing/Program.h"
#include "testing/TemporaryFolder.h"

#include <Utilities/ConfigFile.h>
#include <brvUtils/ipc/ShmVmic.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

using brvTesting::Arguments;
using brvTesting::Child;
using Result = brvTesting::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::size_t versionSize = 2;
constexpr std::size_t segmentSize = versionSize + sizeof(int);

class Card : public testing::Test
{
protected:
    Card()
    {
        folder_.write("shm.cfg", "[Polled]\nType = VMIC\nBaseAddress = 0x1000\nInterrupt = 0\n"
                                 "[Told]\nType = VMIC\nBaseAddress = 2000\nInterrupt = 3\n"
                                 "[Memory]\nType = vmic\nBaseAddress = 0x1000\n"
                                 "[Nowhere]\nType = VMIC\n"
                                 "[Malformed]\nType = VMIC\nBaseAddress = 0x1000g\n"
                                 "[Last]\nType = VMIC\nBaseAddress = 0x3fffbfa\n");
    }

    std::string config() const { return folder_.file("shm.cfg"); }
    brvTesting::Variables variables(int node) const
    {
        return {{"RFM2G_FOLDER", folder_.file("rings")}, {"RFM2G_NODE", std::to_string(node)}, {"RFM2G_RING", ""}, {"RFM2G_SIZE", ""}};
    }

    Result run(const Arguments& arguments)
    {
        return brvTesting::runProgram(brvTesting::commandOf("rfm2g-card", arguments, variables(0)));
    }

    /// What it says when it does its work.
    std::string out(const Arguments& arguments)
    {
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    /// The one line that it says when it does not.
    std::string refusal(const Arguments& arguments)
    {
        const Result result = run(arguments);
        EXPECT_NE(result.code, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, StartsWith("rfm2g-card: "));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        return result.err;
    }

    brvTesting::TemporaryFolder folder_{"a cärd"};
};

/// A segment of a version record and a number, used as it is asked to line by line.
BRV_CHILD(segmentUser)
{
    Utilities::ConfigFile config(arguments[0]);
    config.setSection(arguments[1]);
    brvUtils::ShmVmic segment(arguments[1].c_str(), segmentSize, 0, config);
    if (segment.getPtr() == nullptr) {
        brvTesting::childSay("refused");
        return 0;
    }
    segment.describePart(0, 0, versionSize, nullptr);
    segment.describePart(1, versionSize, sizeof(int), nullptr);
    char* const number = static_cast<char*>(segment.getPtr()) + versionSize;
    brvTesting::childSay("open");
    while (const auto command = brvTesting::childHear()) {
        if (*command == "version") {
            short version = 0;
            const bool valid = segment.beforeRead(0);
            std::memcpy(&version, segment.getPtr(), sizeof version);
            brvTesting::childSay(valid ? std::to_string(version) : "invalid");
        } else if (*command == "read") {
            int value = 0;
            const bool valid = segment.beforeRead(1);
            std::memcpy(&value, number, sizeof value);
            brvTesting::childSay(valid ? std::to_string(value) : "invalid");
        } else {
            const int value = std::stoi(*command);
            std::memcpy(number, &value, sizeof value);
            segment.afterWrite(1);
            brvTesting::childSay("written");
        }
    }
    return 0;
}

std::string answer(Child& user, const std::string& command)
{
    user.send(command);
    return user.readLine();
}

} // namespace

TEST_F(Card, listsWhoHasNodesOpenAndRemovesRingsThatNobodyHas)
{
    EXPECT_THAT(out({"list"}), StartsWith("no rings in "));
    std::filesystem::create_directory(folder_.path() / "rings"); // whoever names a folder makes it
    EXPECT_THAT(refusal({"remove", "default"}), HasSubstr("default"));
    {
        Child told("segmentUser", {config(), "Told"}, variables(200));
        Child polled("segmentUser", {config(), "Polled"}, variables(7));
        ASSERT_TRUE(told.awaitLine("open") && polled.awaitLine("open"));
        const std::string toldLine = "node 200: process " + std::to_string(told.id()) + ", events 3";
        EXPECT_EQ(out({"list"}), "ring default: 64 MB\n  node 7: process " + std::to_string(polled.id()) + ", no events\n  " + toldLine + "\n");
        polled.kill();
        EXPECT_THAT(out({"list"}), Not(HasSubstr("node 7")));
        EXPECT_THAT(refusal({"remove", "default"}), HasSubstr(toldLine));
        told.closeInput();
        told.expectExit(0);
    }
    EXPECT_EQ(out({"list"}), "ring default: 64 MB\n  no nodes\n");
    out({"remove", "default"});
    EXPECT_THAT(out({"list"}), StartsWith("no rings in "));
    EXPECT_THAT(refusal({"--ring", "default", "list"}), HasSubstr("no ring \"default\""));
    folder_.write("rings/ring-default.mem", ""); // as its maker leaves it who is killed
    EXPECT_THAT(out({"list"}), StartsWith("no rings in "));
    EXPECT_THAT(refusal({"--ring", "default", "list"}), HasSubstr("no ring \"default\""));
    out({"remove", "default"});
}

TEST_F(Card, writesVersionsThatProgramsRead)
{
    std::filesystem::create_directory(folder_.path() / "rings");
    out({"version", "--size", "128", config(), "Polled", "511", std::to_string(segmentSize)});
    EXPECT_THAT(out({"list"}), HasSubstr("128 MB"));
    EXPECT_EQ(out({"show", "1000", "16"}), "00001000  ff 01 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n") << "-1 + 1 is 0";
    out({"version", config(), "Polled", "--", "-2", "6"});
    EXPECT_EQ(out({"show", "0xffe", "0x30"}),
        "00000ffe  00 00 fe ff 00 00 00 00  fd ff ff ff 00 00 00 00  |................|\n"
        "0000100e  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n"
        "0000101e  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n");

    Child user("segmentUser", {config(), "Polled"}, variables(1));
    ASSERT_TRUE(user.awaitLine("open"));
    EXPECT_EQ(answer(user, "version"), "-2");
    EXPECT_EQ(answer(user, "4711"), "written");
    out({"damage", config(), "Polled", "1", "6"});
    EXPECT_EQ(answer(user, "read"), "invalid");
    EXPECT_EQ(answer(user, "version"), "-2");
    out({"damage", "--at", "100a"});
    EXPECT_EQ(answer(user, "read"), "4711");
    EXPECT_THAT(out({"show", "0", "1024"}), AllOf(StartsWith("00000000 "), HasSubstr("|\n*\n000003f0 ")));
}

TEST_F(Card, switchesFaultsWhileProgramsRun)
{
    std::filesystem::create_directory(folder_.path() / "rings");
    Child writer("segmentUser", {config(), "Polled"}, variables(1)), reader("segmentUser", {config(), "Polled"}, variables(2));
    ASSERT_TRUE(writer.awaitLine("open") && reader.awaitLine("open"));
    EXPECT_EQ(out({"fault"}), "ring-open off\nopen-refused off\nlost-writes off\nsilent off\n");
    EXPECT_EQ(answer(writer, "1"), "written");
    for (const Arguments& fault : {Arguments{"silent", "1"}, {"silent", "1", "on"}, {"ring-open", "on"}, {"lost-writes", "1"}}) {
        Arguments command = {"fault"};
        command.insert(command.end(), fault.begin(), fault.end());
        EXPECT_THAT(out(command), StartsWith(fault[0] + " "));
        EXPECT_EQ(answer(writer, "2"), "written");
        EXPECT_EQ(answer(reader, "read"), "1") << fault[0];
        EXPECT_THAT(out({"list"}), HasSubstr("\n  fault " + fault[0] + " " + fault[1] + "\n"));
        out({"fault", "off"});
        EXPECT_EQ(answer(writer, "1"), "written");
    }
    out({"fault", "silent", "3"});
    out({"fault", "silent", "1"});
    EXPECT_EQ(out({"fault", "silent"}), "silent 1, 3\n");
    EXPECT_EQ(out({"fault", "silent", "1", "off"}), "silent 3\n");
    EXPECT_EQ(answer(writer, "3"), "written");
    EXPECT_EQ(answer(reader, "read"), "3");
    EXPECT_EQ(out({"fault", "silent", "off"}), "silent off\n");
    EXPECT_EQ(out({"fault", "lost-writes", "off"}), "lost-writes off\n");
    for (const char* fault : {"open-refused", "ring-open"}) {
        EXPECT_EQ(out({"fault", fault, "on"}), fault + std::string(" on\n"));
        Child late("segmentUser", {config(), "Polled"}, variables(3));
        EXPECT_TRUE(late.awaitLine("refused"));
        EXPECT_EQ(out({"fault", fault, "off"}), fault + std::string(" off\n"));
    }
}

TEST_F(Card, refusesWhatMakesNoSenseAndWritesNothing)
{
    std::filesystem::create_directory(folder_.path() / "rings");
    const std::string size = std::to_string(segmentSize);
    EXPECT_THAT(refusal({"version", config(), "Last", "1", "7"}), HasSubstr("end at 0x4000001, beyond the card's 0x4000000 bytes"));
    EXPECT_THAT(out({"list"}), StartsWith("no rings in ")) << "no ring is made in vain";
    EXPECT_THAT(refusal({"show", "0"}), HasSubstr("no ring \"default\""));
    EXPECT_THAT(refusal({"fault", "silent", "1"}), HasSubstr("no ring \"default\""));
    out({"version", config(), "Last", "0", "6"});
    const struct
    {
        Arguments arguments;
        const char* text;
    } mistakes[] = {
        {{}, "no command is given"},
        {{"lists"}, "lists"},
        {{"--ring", "a/b", "list"}, "\"a/b\" is no name of a ring"},
        {{"version", config(), "Last", "1", "7"}, "section [Last]: the segment and its checksums end at 0x4000001"},
        {{"version", config(), "Absent", "1", size}, "has no section [Absent]"},
        {{"version", config(), "Memory", "1", size}, "section [Memory]: the segment is not on a card"},
        {{"version", config(), "Nowhere", "1", size}, "section [Nowhere] has no BaseAddress"},
        {{"version", config(), "Malformed", "1", size}, "BaseAddress \"0x1000g\" is no hexadecimal number"},
        {{"version", config(), "Polled", "40000", size}, "VERSION"},
        {{"version", config(), "Polled", "1", "1"}, "SIZE"},
        {{"version", config(), "Polled", "1"}, "SIZE"},
        {{"version", "--size", "65", config(), "Polled", "1", size}, "64, 128 or 256 MB"},
        {{"version", folder_.file("none.cfg"), "Polled", "1", size}, "none.cfg cannot be read"},
        {{"damage"}, "damage needs"},
        {{"damage", config(), "Polled", "256", size}, "PART"},
        {{"damage", "--at", "3fffffd"}, "a word at 0x3fffffd ends beyond"},
        {{"damage", config(), "Last", "1", "7"}, "beyond"},
        {{"show", "0x"}, "\"0x\" is no hexadecimal number"},
        {{"show", "100000000"}, "is no hexadecimal number of 32 bits"},
        {{"show", "3fffffe", "3"}, "3 bytes at 0x3fffffe end beyond"},
        {{"show", "0", "-1"}, "-1"},
        {{"fault", "noise"}, "there is no fault \"noise\""},
        {{"fault", "silent", "256"}, "0 to 255, not \"256\""},
        {{"fault", "silent", "1", "maybe"}, "silent 1 is on or off, not \"maybe\""},
        {{"fault", "ring-open", "1"}, "ring-open is on or off"},
        {{"fault", "ring-open", "on", "off"}, "\"off\" is too much"},
        {{"fault", "lost-writes", "0"}, "not \"0\""},
        {{"fault", "lost-writes", "on"}, "not \"on\""},
    };
    for (const auto& mistake : mistakes) {
        EXPECT_THAT(refusal(mistake.arguments), HasSubstr(mistake.text));
    }
    EXPECT_EQ(out({"list"}), "ring default: 64 MB\n  no nodes\n");
    EXPECT_THAT(out({"show", "0", "4000000"}), HasSubstr("|................|\n*\n003d08f0 ")) << "all zero";
    EXPECT_THAT(out({"fault", "--help"}), AllOf(HasSubstr("lost-writes N"), HasSubstr("Example: rfm2g-card ")));
}
