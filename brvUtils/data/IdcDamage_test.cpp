#include "brvUtils/data/IdcDataFile_test.h"

#include "brvUtils/data/internal/IdcBlocks.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace idcTest {
namespace {

/// Garbage of that many bytes, of which many could begin a block.
std::string garbage(std::size_t count)
{
    const std::string begin = "\xAF\xAF\xFE\xAF\xFE\xC0\xAF\xFE\xC0";
    std::string bytes;
    while (bytes.size() < count) {
        bytes += begin;
    }
    return bytes.substr(0, count);
}

TEST(IdcDamage, GarbageBetweenBlocksIsPassedAndTold)
{
    IdcWriter writer;
    writer.garbage(garbage(5));
    writer.add(ego(1));
    writer.garbage(garbage(700000));
    writer.add(ego(2));
    writer.add(ego(3));
    writer.garbage("\xAF\xFE\xC0");
    const Loaded loaded(writer.bytes());
    EXPECT_TRUE(loaded.result);
    EXPECT_EQ(loaded.rows(), 3u);
    EXPECT_EQ(loaded.err, "5 Bytes skipped\n700000 Bytes skipped\n3 Bytes skipped\n");

    const Loaded nothing(garbage(12345));
    EXPECT_TRUE(nothing.result);
    EXPECT_EQ(nothing.table.getColmnCount(), 9u);
    EXPECT_EQ(nothing.err, "12345 Bytes skipped\n");
    EXPECT_TRUE(Loaded("").result);
}

TEST(IdcDamage, WrongHeadersCostNoMoreThanTheirBlocks)
{
    IdcWriter writer;
    IdcHeader wrong;
    wrong.previousSize = 0xFFFFFFFFu;
    wrong.reserved = 9;
    wrong.device = 200;
    writer.add(ego(1), wrong);
    for (const unsigned type : {0u, 0x1002u, 0x6130u, 0x6120u, 0xFFFFu}) {
        writer.block(static_cast<std::uint16_t>(type), std::string(type % 100, 'x'));
    }
    for (const std::uint16_t type : {IdcWriter::measurementList, IdcWriter::objectList, IdcWriter::frameEnd}) {
        writer.block(type, "");
        writer.block(type, "short");
    }
    writer.block(IdcWriter::measurementList, idcPayload(ego(2)) + "more than the list needs");
    IdcHeader small; // the rest of the payload is no block then
    small.size = 30;
    writer.add(ego(3), small);
    IdcHeader nothing;
    nothing.magic = 0xAFFEC0C3u;
    writer.add(ego(4), nothing);
    writer.add(ego(5));
    const std::size_t list = idcPayload(ego(3)).size();
    {
        const Loaded loaded(writer.bytes());
        EXPECT_EQ(loaded.columns.at("Time"), (std::vector<double>{0, 1, 4}));
        EXPECT_EQ(loaded.err, std::to_string(list - 30 + 24 + list) + " Bytes skipped\n");
    }
    for (const std::uint32_t size : {0xFFFFFFFFu, 0x80000000u, static_cast<std::uint32_t>(list + 1)}) {
        IdcWriter more;
        more.garbage(writer.bytes());
        IdcHeader large;
        large.size = size;
        more.add(ego(6), large);
        EXPECT_EQ(Loaded(more.bytes()).rows(), 3u) << "more than the file holds: it ends before this block";
        more.add(ego(7));
        const Loaded loaded(more.bytes());
        EXPECT_EQ(loaded.rows(), 4u) << "one of the two, as others follow";
    }
}

TEST(IdcDamage, RecordsThatAreShorterThanTheySayAreDropped)
{
    IdcWriter writer;
    IdcMeasurementList measurements = ego(1);
    measurements.count = 7;
    writer.add(measurements); // does not start the clock either
    measurements.count = 65535;
    writer.add(measurements);
    measurements = ego(2);
    measurements.measurements.push_back({5, std::string("text")});
    IdcHeader header;
    const std::string payload = idcPayload(measurements);
    header.size = static_cast<std::uint32_t>(payload.size() - 1);
    writer.add(measurements, header);
    IdcMeasurementList unending = ego(3);
    unending.groupName = std::string(300, 'g');
    writer.block(IdcWriter::measurementList, idcPayload(unending).substr(0, 200)); // its name does not end
    writer.add(ego(4));

    IdcObjectList list = objects({object(1), object(2)});
    list.count = 3;
    writer.add(list);
    list = objects({object(1), object(2)});
    list.objects[1].contourCount = 1;
    writer.add(list);
    list = objects({object(1), object(2)});
    list.objects[1].measurementCount = 65535;
    writer.add(list);
    list.count = 1;
    list.objects[1] = object(3);
    writer.add(list); // two where one is announced: the payload is longer than the record needs
    const Loaded loaded(writer.bytes());
    EXPECT_EQ(loaded.columns.at("Time"), std::vector<double>{0});
    ASSERT_EQ(loaded.objects(), 1u);
    EXPECT_EQ(loaded.columns.at("OBJECT_0001_Unique_ID"), std::vector<double>{1});
}

TEST(IdcDamage, BehindAValueOfUnknownLengthABlockEnds)
{
    for (const std::uint8_t type : {std::uint8_t{13}, std::uint8_t{255}}) {
        IdcWriter writer;
        IdcMeasurementList measurements = ego(1);
        measurements.measurements.insert(measurements.measurements.begin(), {99, 1.0, type});
        writer.add(measurements); // starts the clock, but the six are behind
        measurements = ego(2);
        measurements.measurements.push_back({99, 1.0, type});
        writer.add(measurements);
        IdcObjectList list = objects({object(1), object(2), object(3)});
        list.objects[1].measurements = {{1, 1.0, type}};
        writer.add(list);
        const Loaded loaded(writer.bytes());
        EXPECT_EQ(loaded.columns.at("Time"), std::vector<double>{1});
        EXPECT_EQ(loaded.objects(), 2u);
    }
}

/// A few blocks of each kind.
std::string small()
{
    IdcWriter writer;
    IdcObjectRecord rich = object(7);
    rich.contour = {{1, 2}, {3, 4}};
    rich.measurements = {{1, 2.0}, {2, std::string("text")}};
    for (int i = 0; i < 2; ++i) {
        writer.add(ego(i));
        writer.add(objects({rich, object(static_cast<std::uint32_t>(i) + 100)}));
        writer.block(IdcWriter::frameEnd, idcFrameEnd(1, 2, 3, {}));
    }
    writer.block(IdcWriter::trailer, "");
    return writer.take();
}

TEST(IdcDamage, ACutFileKeepsWhatComesBeforeTheCut)
{
    const std::string bytes = small();
    const TemporaryFolder folder;
    const CapturedOutput captured;
    std::size_t values = 0;
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        IdcDataFile table;
        ASSERT_TRUE(table.load(folder.write("f", bytes.substr(0, length)), names));
        std::size_t now = 0;
        for (const auto& [name, column] : columnsOf(table)) {
            now += column.size();
        }
        ASSERT_GE(now, values) << length;
        values = now;
    }
    EXPECT_EQ(values, 2u * (9 + 13 * 3)) << "two rows, three objects";
}

TEST(IdcDamage, WrongBytesDoNoHarm)
{
    const std::string bytes = small();
    const TemporaryFolder folder;
    const CapturedOutput captured;
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = bytes;
        for (unsigned left = 1 + random() % 8; left > 0; --left) {
            damaged[random() % damaged.size()] = static_cast<char>(random() % 2 ? random() : random() % 4 ? 0xFF : 0);
        }
        IdcDataFile table;
        ASSERT_TRUE(table.load(folder.write("f", damaged), names));
        ASSERT_LE(table.getRowsCount(), 2u);
        ASSERT_LE(table.getColmnCount(), 9u + 13 * 4);
    }
}

TEST(IdcDamage, AFileThatShrinksMeanwhileEndsEarlier)
{
    IdcWriter writer;
    for (int i = 0; i < 60000; ++i) {
        writer.add(ego(i));
    }
    const TemporaryFolder folder;
    const std::string file = folder.write("f", writer.take());
    IdcDataFile table;
    bool cut = false;
    table.setProgress([&](std::uint64_t, std::uint64_t) {
        if (!cut) {
            std::error_code refused; // where a file that is open cannot be cut, there is nothing to see
            std::filesystem::resize_file(folder.path() / "f", 5000000, refused);
            cut = !refused;
        }
        return true;
    });
    EXPECT_TRUE(table.load(file, names));
    EXPECT_LT(table.getRowsCount(), cut ? 48000u : 60001u);
    EXPECT_GT(table.getRowsCount(), 30000u);
}

/// What a walk through all blocks gives: their types and payloads.
std::vector<std::string> walk(const std::string& file, std::size_t window)
{
    using brvUtils::IdcBlocks;
    brvUtils::os::InputFile input;
    EXPECT_EQ(input.open(file), brvUtils::os::error::none);
    IdcBlocks blocks(input, window);
    std::vector<std::string> found;
    for (IdcBlocks::Found next; (next = blocks.next()) != IdcBlocks::Found::end;) {
        if (next != IdcBlocks::Found::block) {
            continue;
        }
        const std::size_t part = 1 + found.size() % IdcBlocks::longestTake;
        std::string payload = std::to_string(blocks.type()) + (blocks.skipText() ? ":text" : ":no text");
        payload += blocks.skip(part) ? ", skipped " : ", too short ";
        while (const unsigned char* const bytes = blocks.take(part)) {
            payload.append(reinterpret_cast<const char*>(bytes), part);
        }
        found.push_back(payload);
    }
    EXPECT_EQ(blocks.done(), input.size());
    return found;
}

TEST(IdcBlocks, AreTheSameThroughAnyWindow)
{
    std::mt19937 random(2);
    IdcWriter writer;
    for (int i = 0; i < 400; ++i) {
        std::string payload(random() % (i % 10 == 0 ? 3000 : 300), 'p');
        for (char& byte : payload) {
            byte = static_cast<char>(random() % 100 * 2);
        }
        writer.block(static_cast<std::uint16_t>(i), payload);
        writer.garbage(garbage(i % 7 == 0 ? random() % 1000 : 0));
    }
    const TemporaryFolder folder;
    const CapturedOutput captured;
    const std::string file = folder.write("f", writer.take());
    const std::vector<std::string> expected = walk(file, 1 << 20);
    EXPECT_EQ(expected.size(), 400u);
    for (std::size_t window = 256; window < 300; ++window) {
        EXPECT_TRUE(walk(file, window) == expected) << window;
    }
}

} // namespace
} // namespace idcTest
