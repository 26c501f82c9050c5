#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/VersionResource_test.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace versionTest;

namespace brvUtils::os {
namespace {

class LinuxVersionInfo : public testing::Test
{
protected:
    std::string textIn(const std::string& bytes) { return textOf(folder.write("module.so", bytes)); }

    static std::string textOf(const std::string& file)
    {
        const std::uint32_t size = versionInfoSize(file);
        std::string data;
        std::string text;
        if (size == 0) {
            return "no resource";
        }
        if (!readVersionInfo(file, size, data)) {
            return "no data";
        }
        return versionInfoText(data, "\\StringFileInfo\\040904b0\\FileVersion", text) ? text : "no text";
    }

    brvTesting::TemporaryFolder folder;
    const std::string simple = resource({entry(u"FileVersion", u"1.6.0.0")});
};

TEST_F(LinuxVersionInfo, LiesInASectionOfModulesOfBothWidths)
{
    for (const bool is64Bit : {false, true}) {
        ElfImage image;
        image.is64Bit = is64Bit;
        image.data = simple;
        const std::string whole = image.bytes();
        EXPECT_EQ(textIn(whole), "1.6.0.0");
        image.name = ".rsrc.versions";
        EXPECT_EQ(textIn(image.bytes()), "no resource");
        image.name = ".rsrc.versio";
        EXPECT_EQ(textIn(image.bytes()), "no resource");

        std::string other = whole;
        other[5] = 2; // numbers high byte first
        EXPECT_EQ(textIn(other), "no resource");
        other[5] = 1;
        other[4] = 3; // neither 32 nor 64 bit
        EXPECT_EQ(textIn(other), "no resource");
    }
}

TEST_F(LinuxVersionInfo, HeadersOfSectionsThatLieHideIt)
{
    for (const bool is64Bit : {false, true}) {
        ElfImage image;
        image.is64Bit = is64Bit;
        image.data = simple;
        const std::string whole = image.bytes();
        const std::size_t size = image.entrySize();
        const std::size_t header = image.table() + 2 * size;
        const std::size_t place = is64Bit ? 24 : 16; // of the section's offset; its size is behind it
        const std::size_t width = is64Bit ? 8 : 4;
        const auto with = [&](std::size_t at, const std::string& bytes) {
            std::string changed = whole;
            put(changed, at, bytes);
            return textIn(changed);
        };
        EXPECT_EQ(with(header, u32(0xFFFFFFFF)), "no resource") << "its name";
        EXPECT_EQ(with(header + 4, u32(8)), "no resource") << "it takes no room in the file";
        for (const std::string& number : {std::string(width, '\xFF'), u64(whole.size()).substr(0, width)}) {
            EXPECT_EQ(with(header + place, number), "no data") << "its offset";
            EXPECT_EQ(with(header + place + width, number), "no data") << "its size";
            EXPECT_EQ(with(header - size + place, number), "no resource") << "the offset of the names";
            EXPECT_EQ(with(is64Bit ? 40 : 32, number), "no resource") << "the offset of the table";
        }
        const std::size_t sizes = is64Bit ? 58 : 46;
        EXPECT_EQ(with(sizes, u16(39)), "no resource") << "the size of headers";
        EXPECT_EQ(with(sizes + 2, u16(2)), "no resource") << "their number";
        EXPECT_EQ(with(sizes + 2, u16(0xFFFF)), "1.6.0.0") << "found before the table ends";
        EXPECT_EQ(with(sizes + 4, u16(0xFFFF)), "no resource") << "the section of names";
        for (std::size_t end = 0; end < whole.size(); ++end) {
            const std::string text = textIn(whole.substr(0, end));
            EXPECT_TRUE(text == "no resource" || text == "no data") << end << ": " << text;
        }
    }
}

TEST_F(LinuxVersionInfo, OfFilesThatEndTooEarlyNothingIsTold)
{
    PeImage image;
    image.languages = {{0x0409, simple}};
    const std::string whole = image.bytes();
    const std::size_t end = image.dataEntries() + 16 + simple.size();
    for (std::size_t size = 0; size < end; ++size) {
        const std::string text = textIn(whole.substr(0, size));
        EXPECT_EQ(text, size < image.dataEntries() + 16 ? "no resource" : "no data") << size;
    }
    EXPECT_EQ(textIn(whole.substr(0, end)), "1.6.0.0");
}

TEST_F(LinuxVersionInfo, OfSizesBehindTheFileNothingIsReserved)
{
    std::string lying = peFile(simple);
    put(lying, PeImage::leaves + 16 + 8 + 4, u32(0xFFFFFFFF));
    const std::string file = folder.write("module.dll", lying);
    EXPECT_EQ(versionInfoSize(file), 0xFFFFFFFFu);
    std::string data;
    EXPECT_FALSE(readVersionInfo(file, 0xFFFFFFFFu, data));
    EXPECT_LE(data.size(), 65536u);
}

TEST_F(LinuxVersionInfo, WhatIsNoFileIsNotWaitedFor)
{
    const std::string pipe = folder.file("pipe.dll");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(versionInfoSize(pipe), 0u);
    EXPECT_EQ(versionInfoSize("/dev/zero"), 0u);
    EXPECT_EQ(versionInfoSize(folder.file()), 0u);
}

} // namespace
} // namespace brvUtils::os
