#include "rfm2g/Driver_test.h"
#include "rfm2g/Ring.h"

#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace cardTest;
using brvTesting::CapturedOutput;
using brvTesting::EnvironmentGuard;
using softwareCard::Ring;

constexpr Offset mebibyte = 1u << 20;

Status tryOpen(const std::string& path)
{
    Handle handle = nullptr;
    std::string device = path;
    const Status status = driver().open(device.data(), &handle);
    EXPECT_EQ(handle != nullptr, status == Status::success);
    if (handle != nullptr) {
        driver().close(&handle);
    }
    return status;
}

TEST(Opening, TakesTheDevicesOfTheSystemOnly)
{
    const OwnRings rings;
    Handle handle = nullptr;
    EXPECT_EQ(driver().open(nullptr, &handle), Status::badParameter1);
    EXPECT_EQ(driver().open(device("1").data(), nullptr), Status::badParameter2);
    for (const char* number : {"", "256", "-1", "1x", " 1", "99999999999999999999"}) {
        EXPECT_EQ(tryOpen(device(number)), Status::noBoard) << number;
    }
    EXPECT_EQ(tryOpen("rfm2g1"), Status::noBoard);
    EXPECT_EQ(tryOpen(device("0")), Status::success);
    EXPECT_EQ(tryOpen(device("255")), Status::success);
}

TEST(Opening, ObeysTheVariables)
{
    const OwnRings rings;
    {
        const EnvironmentGuard node("RFM2G_NODE", "17");
        const EnvironmentGuard ring("RFM2G_RING", "A-b_c.9");
        const EnvironmentGuard size("RFM2G_SIZE", "128");
        const OpenNode card(1);
        Node number = 0;
        Offset bytes = 0;
        EXPECT_EQ(driver().nodeId(card, &number), Status::success);
        EXPECT_EQ(driver().size(card, &bytes), Status::success);
        EXPECT_EQ(number, 17);
        EXPECT_EQ(bytes, 128 * mebibyte);
    }
    EXPECT_EQ(softwareCard::ringNames(rings.place().folder), std::vector<std::string>{"A-b_c.9"});

    // Only who makes the ring decides.
    const EnvironmentGuard ring("RFM2G_RING", "A-b_c.9");
    const EnvironmentGuard other("RFM2G_SIZE", "64");
    const OpenNode card(1);
    Offset bytes = 0;
    EXPECT_EQ(driver().size(card, &bytes), Status::success);
    EXPECT_EQ(bytes, 128 * mebibyte);
}

TEST(Opening, NamesAVariableThatIsMalformed)
{
    const OwnRings rings;
    const std::pair<const char*, const char*> malformed[] = {{"RFM2G_NODE", "256"}, {"RFM2G_NODE", "x"}, {"RFM2G_RING", "a/b"},
        {"RFM2G_RING", "a b"}, {"RFM2G_SIZE", "65"}, {"RFM2G_SIZE", "64MB"}};
    for (const auto& [name, value] : malformed) {
        const EnvironmentGuard variable(name, value);
        const CapturedOutput captured;
        EXPECT_EQ(tryOpen(device("1")), Status::noBoard) << name << " " << value;
        EXPECT_EQ(captured.err().find("[software card] " + std::string(name) + " is \"" + value + "\" instead of "), 0u) << captured.err();
        EXPECT_EQ(captured.err().find('\n'), captured.err().size() - 1);
    }
    EXPECT_TRUE(softwareCard::ringNames(rings.place().folder).empty());
}

TEST(Opening, FailsWhenAllPlacesAreTaken)
{
    const OwnRings rings;
    std::vector<std::unique_ptr<OpenNode>> nodes;
    for (Node node = 0; node < 256; ++node) {
        nodes.push_back(std::make_unique<OpenNode>(node));
    }
    {
        const CapturedOutput captured;
        EXPECT_EQ(tryOpen(device("1")), Status::osError);
    }
    EXPECT_EQ(Ring::open(rings.place()).ring->handles().size(), 256u);
    nodes[100]->close();
    nodes[100] = std::make_unique<OpenNode>(Node{100});
}

TEST(Opening, GivesUpOnFilesThatAreNoRings)
{
    const OwnRings rings;
    const std::string path = softwareCard::ringPath(rings.place());
    for (const std::string& content : {std::string("x"), std::string(300'000, 'x')}) {
        std::ofstream(std::filesystem::u8path(path), std::ios::binary) << content;
        const CapturedOutput captured;
        EXPECT_EQ(tryOpen(device("1")), Status::osError);
        EXPECT_NE(captured.err().find("is no ring"), std::string::npos) << captured.err();
        EXPECT_NE(softwareCard::removeRing(rings.place()), "");
        std::filesystem::remove(std::filesystem::u8path(path));
    }
    { const OpenNode node(1); }
    std::filesystem::resize_file(std::filesystem::u8path(path), std::filesystem::file_size(std::filesystem::u8path(path)) - 1);
    const CapturedOutput captured;
    EXPECT_EQ(tryOpen(device("1")), Status::osError);
    EXPECT_NE(captured.err().find("is damaged"), std::string::npos) << captured.err();
}

TEST(Opening, FinishesWhatAKilledMakerLeft)
{
    const OwnRings rings;
    const std::filesystem::path path = std::filesystem::u8path(softwareCard::ringPath(rings.place()));
    for (const std::uintmax_t size : {std::uintmax_t{0}, std::uintmax_t{200} * mebibyte}) {
        std::ofstream file(path, std::ios::binary);
        file.close();
        std::filesystem::resize_file(path, size);
        {
            const OpenNode node(1);
            EXPECT_EQ(node.write(64 * mebibyte - 4, 5), Status::success);
            EXPECT_EQ(node.word(64 * mebibyte - 4), 5u);
        }
        EXPECT_EQ(softwareCard::removeRing(rings.place()), "");
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST(Handles, AreTakenOnlyWhileTheyAreOpen)
{
    const OwnRings rings;
    const Driver& d = driver();
    OpenNode node(1);
    Handle closed = node;
    node.close();
    EXPECT_EQ(static_cast<Handle>(node), nullptr);
    const OpenNode another(1);
    int elsewhere = 0;
    for (const auto& [handle, expected] :
        {std::pair<Handle, Status>{nullptr, Status::nullDescriptor}, {closed, Status::notOpen}, {&elsewhere, Status::notOpen}}) {
        Node number = 0;
        Offset offset = 0;
        Handle copy = handle;
        EXPECT_EQ(d.nodeId(handle, &number), expected);
        EXPECT_EQ(d.size(handle, &offset), expected);
        EXPECT_EQ(d.first(handle, &offset), expected);
        EXPECT_EQ(d.read(handle, 0, &offset, 4), expected);
        EXPECT_EQ(d.write(handle, 0, &offset, 4), expected);
        EXPECT_EQ(d.enableEvent(handle, Event::user1), expected);
        EXPECT_EQ(d.sendEvent(handle, 2, Event::user1, 0), expected);
        EXPECT_EQ(d.enableEventCallback(handle, Event::user1, [](Handle, EventInfo*) {}), expected);
        EXPECT_EQ(d.clearEvent(handle, Event::user1), expected);
        EXPECT_EQ(d.checkRingCont(handle), expected);
        EXPECT_EQ(d.close(&copy), expected);
    }
    EXPECT_EQ(d.close(nullptr), Status::nullDescriptor);
}

TEST(Memory, EndsToTheByte)
{
    const OwnRings rings;
    const OpenNode node(1);
    const Driver& d = driver();
    Offset first = 1;
    Offset size = 0;
    EXPECT_EQ(d.first(node, &first), Status::success);
    EXPECT_EQ(d.size(node, &size), Status::success);
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(size, 64 * mebibyte);
    EXPECT_EQ(d.nodeId(node, nullptr), Status::badParameter2);
    EXPECT_EQ(d.size(node, nullptr), Status::badParameter2);
    EXPECT_EQ(d.first(node, nullptr), Status::badParameter2);

    char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(d.write(node, size - 8, bytes, 8), Status::success);
    EXPECT_EQ(d.write(node, size, bytes, 0), Status::success);
    for (const auto& [offset, length] : {std::pair{size - 7, 8u}, {size, 1u}, {size + 1, 0u}, {UINT32_MAX, 1u}, {8u, UINT32_MAX}, {0u, size + 1}}) {
        EXPECT_EQ(d.write(node, offset, bytes, length), Status::outOfRange) << offset << " " << length;
        EXPECT_EQ(d.read(node, offset, bytes, length), Status::outOfRange) << offset << " " << length;
    }
    EXPECT_EQ(d.write(node, 0, nullptr, 1), Status::badParameter3);
    EXPECT_EQ(d.read(node, 0, nullptr, 1), Status::badParameter3);
    char last = 0;
    EXPECT_EQ(d.read(node, size - 1, &last, 1), Status::success);
    EXPECT_EQ(last, 8);
}

TEST(Memory, IsTheSameForAllNodes)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    // Over the limits of blocks, beside what was never written.
    std::string text(200'000, 'x');
    text[0] = 'a';
    text.back() = 'z';
    EXPECT_EQ(driver().write(one, 60'000, text.data(), static_cast<Offset>(text.size())), Status::success);
    std::string read(400'000, '?');
    EXPECT_EQ(driver().read(two, 0, read.data(), static_cast<Offset>(read.size())), Status::success);
    EXPECT_TRUE(read == std::string(60'000, '\0') + text + std::string(140'000, '\0'));
}

TEST(Memory, OutlivesItsUsersUntilTheRingIsRemoved)
{
    const OwnRings rings;
    {
        const OpenNode node(1);
        EXPECT_EQ(node.write(4, 1234), Status::success);
        EXPECT_NE(softwareCard::removeRing(rings.place()), "");
    }
    {
        const OpenNode node(2);
        EXPECT_EQ(node.word(4), 1234u);
    }
    EXPECT_EQ(softwareCard::removeRing(rings.place()), "");
    EXPECT_EQ(Ring::open(rings.place()).problem, "there is no ring \"default\"");
    EXPECT_NE(softwareCard::removeRing(rings.place()), "");
    const OpenNode node(2);
    EXPECT_EQ(node.word(4), 0u);
}

TEST(Faults, TakeEffectWhileTheRingIsUsed)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    Receiver receiver(two, {Event::user1});
    const auto ring = Ring::open(rings.place()).ring;
    ASSERT_TRUE(ring);

    const auto set = [&](const softwareCard::Faults& all) { EXPECT_TRUE(ring->changeFaults([&](softwareCard::Faults& faults) { faults = all; })); };

    softwareCard::Faults faults;
    faults.ringOpen = true;
    set(faults);
    EXPECT_EQ(driver().checkRingCont(one), Status::linkTestFail);
    EXPECT_EQ(one.write(0, 1), Status::success);
    EXPECT_EQ(one.send(2, Event::user1, 1), Status::success);
    EXPECT_EQ(two.word(0), 0u);

    faults = {};
    faults.silent[1] = true;
    set(faults);
    EXPECT_TRUE(ring->faults().silent[1] && !ring->faults().ringOpen);
    EXPECT_EQ(driver().checkRingCont(one), Status::success);
    EXPECT_EQ(one.write(0, 2), Status::success);
    EXPECT_EQ(one.send(2, Event::user1, 2), Status::success);
    EXPECT_EQ(one.word(0), 0u);
    EXPECT_EQ(two.write(4, 3), Status::success);
    EXPECT_EQ(one.word(4), 3u);

    faults = {};
    faults.lostWrites = 3;
    set(faults);
    for (Offset i = 0; i < 9; ++i) {
        EXPECT_EQ(one.write(100 + 4 * i, 1), Status::success);
    }
    unsigned arrived = 0;
    for (Offset i = 0; i < 9; ++i) {
        arrived += two.word(100 + 4 * i);
    }
    EXPECT_EQ(arrived, 6u);

    faults = {};
    faults.openRefused = true;
    set(faults);
    EXPECT_EQ(tryOpen(device("3")), Status::driverError);
    set({});
    EXPECT_EQ(tryOpen(device("3")), Status::success);

    EXPECT_EQ(one.send(2, Event::user1, 3), Status::success);
    EXPECT_EQ(receiver.next(1), (std::vector<Told>{{Event::user1, 1, 3}}));
}

TEST(Faults, AreNotUndoneByWhoChangesOthers)
{
    const OwnRings rings;
    { const OpenNode node(1); }
    std::vector<std::thread> workers;
    for (std::size_t node = 0; node < 4; ++node) {
        workers.emplace_back([&, node] {
            const auto ring = Ring::open(rings.place()).ring;
            for (int round = 0; round < 500; ++round) {
                const bool on = round % 2 == 0;
                EXPECT_TRUE(ring->changeFaults([&](softwareCard::Faults& faults) { faults.silent[node] = on; }));
                EXPECT_EQ(ring->faults().silent[node], on);
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const auto ring = Ring::open(rings.place()).ring;
    EXPECT_THROW(ring->changeFaults([](softwareCard::Faults& faults) {
        faults.ringOpen = true;
        throw 1;
    }), int);
    EXPECT_FALSE(ring->faults().ringOpen);
    EXPECT_TRUE(ring->changeFaults([](softwareCard::Faults&) {})) << "it is not locked";
}

TEST(Messages, AreThereForEachStatus)
{
    for (const int known : {0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11, 15, 19, 20, 22, 27, 28, 31, 32, 35, 41}) {
        const char* text = driver().errorMsg(static_cast<Status>(known));
        EXPECT_TRUE(text != nullptr && *text != '\0') << known;
    }
    for (const int unknown : {-1, 5, 21, 42, 1000}) {
        EXPECT_EQ(driver().errorMsg(static_cast<Status>(unknown)), nullptr) << unknown;
    }
}

} // namespace
