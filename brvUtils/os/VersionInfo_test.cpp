#include "brvUtils/os/VersionInfo.h"

#include "brvUtils/os/VersionResource_test.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace versionTest;

namespace brvUtils::os {
namespace {

constexpr const char* fileVersion = "\\StringFileInfo\\040904b0\\FileVersion";

/// The text under a path of a resource, or what is missing.
std::string textOf(const std::string& data, const std::string& path = fileVersion)
{
    std::string text;
    return !versionInfoHasRoot(data) ? "no root" : !versionInfoText(data, path, text) ? "no text" : text;
}

class VersionInfo : public testing::Test
{
protected:
    /// The same of a file.
    std::string textIn(const std::string& bytes, const std::string& path = fileVersion)
    {
        const std::string file = folder.write("module.dll", bytes);
        const std::uint32_t size = versionInfoSize(file);
        std::string data;
        return size == 0 ? "no resource" : !readVersionInfo(file, size, data) ? "no data" : textOf(data, path);
    }

    brvTesting::TemporaryFolder folder;
    const std::string simple = resource({entry(u"FileVersion", u"1.6.0.0")});
};

TEST_F(VersionInfo, IsFoundInFilesOfBothWidths)
{
    EXPECT_EQ(textIn(peFile(simple, true)), "1.6.0.0");
    EXPECT_EQ(textIn(peFile(simple, false)), "1.6.0.0");
    EXPECT_EQ(textIn(PeImage().bytes()), "no resource");
    EXPECT_EQ(textIn("MZ, but a text"), "no resource");
}

TEST_F(VersionInfo, HasTheNumberOfVersionResources)
{
    PeImage image;
    image.languages = {{0x0409, simple}};
    image.type = 10;
    EXPECT_EQ(textIn(image.bytes()), "no resource");
    image.type = 16;
    image.name = 2;
    EXPECT_EQ(textIn(image.bytes()), "no resource");
}

TEST_F(VersionInfo, OfSeveralLanguagesTheMostUsefulIsTaken)
{
    const auto in = [](const char16_t* language) { return resource({entry(u"FileVersion", language)}); };
    PeImage image;
    image.languages = {{0x0407, in(u"German")}, {0x0409, in(u"American")}, {0x040C, in(u"French")}};
    EXPECT_EQ(textIn(image.bytes()), "American");
    image.languages.insert(image.languages.begin(), {0, in(u"neutral")});
    EXPECT_EQ(textIn(image.bytes()), "neutral");
    image.languages = {{0x0411, in(u"Japanese")}, {0x0412, in(u"Korean")}};
    EXPECT_EQ(textIn(image.bytes()), "Japanese");

    image.languages.clear();
    for (unsigned i = 1; i < 3000; ++i) {
        image.languages.push_back({i, in(i == 0x0409 ? u"American" : u"another")});
    }
    EXPECT_EQ(textIn(image.bytes()), "American");
}

TEST_F(VersionInfo, ATreeThatLoopsLeadsNowhere)
{
    const std::string whole = peFile(simple);
    for (const std::size_t level : {PeImage::kinds, PeImage::names, PeImage::leaves}) {
        for (const std::size_t target : {PeImage::kinds, PeImage::names, PeImage::leaves}) {
            std::string looping = whole;
            put(looping, level + 20, u32(0x80000000u | (target - PeImage::tree)));
            const bool isUnchanged = looping == whole;
            EXPECT_EQ(textIn(looping), isUnchanged ? "1.6.0.0" : "no resource") << level << " to " << target;
        }
    }
}

TEST_F(VersionInfo, MoreSectionsThanAnyModuleHasAreNotLookedThrough)
{
    std::string many = peFile(simple);
    put(many, 64 + 6, u16(0xFFFF));
    many.resize(many.size() + 40 * 0xFFFF); // they are there
    EXPECT_EQ(textIn(many), "no resource");
}

TEST_F(VersionInfo, CaseDoesNotCountInNames)
{
    const std::string data = resource({entry(u"FileVersion", u"1"), entry(u"Gr\u00D6\u00dfe", u"2"), entry(u"\u0394\u0416\u0141", u"3")}, u"040C04E4");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040c04e4\\FileVersion"), "1");
    EXPECT_EQ(textOf(data, "\\STRINGFILEINFO\\040c04E4\\fileversion"), "1");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040c04e4\\gr\xC3\xB6\xC3\x9F" "E"), "2");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040c04e4\\\xCE\xB4\xD0\xB6\xC5\x82"), "3");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040c04e4\\FileVersio"), "no text");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040c04e4\\FileVersions"), "no text");
    EXPECT_EQ(textOf(data, "\\StringFileInfo\\040904e4\\FileVersion"), "no text");
}

TEST_F(VersionInfo, TextsAreUtf8)
{
    const auto text = [](const std::u16string& given) { return textOf(resource({entry(u"FileVersion", given)})); };
    EXPECT_EQ(text(u"\u00e9 \u5236 \U0001F697"), "\xC3\xA9 \xE5\x88\xB6 \xF0\x9F\x9A\x97");
    EXPECT_EQ(text({u'a', char16_t(0xD83D), u'b', char16_t(0xDC80)}), "a\xEF\xBF\xBD" "b\xEF\xBF\xBD") << "halves of pairs are no bytes";
    EXPECT_EQ(text(u""), "");
    EXPECT_EQ(text(std::u16string(30000, u'x')), std::string(30000, 'x'));
    EXPECT_EQ(text(std::u16string(u"cut\0off", 7)), "cut");
    const std::string name = "\\StringFileInfo\\040904b0\\\xF0\x9F\x9A\x97";
    EXPECT_EQ(textOf(resource({entry(u"\U0001F697", u"a name of a pair")}), name), "a name of a pair");
}

TEST_F(VersionInfo, SizesAreNotBelieved)
{
    const std::string next = entry(u"FileVersion", u"found");
    const auto behind = [&](const std::string& first) { return textOf(resource({first, next})); };
    EXPECT_EQ(behind(block(u"Empty", 0, 1, "")), "found");
    EXPECT_EQ(behind(block(u"FileVersion", 65535, 1, utf16(u"in bytes, or just wrong"))), "in bytes, or just wrong");
    EXPECT_EQ(behind(block(u"FileVersion", 1, 1, utf16(u"longer"))), "longer");
    EXPECT_EQ(behind(block(u"FileVersion", 14, 0, utf16(u"binary"))), "binary");
    EXPECT_EQ(behind(block(u"FileVersion", 0, 1, utf16(u"none"))), "");

    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{65535}}) {
        std::string lying = entry(u"Wrong", u"x");
        put(lying, 0, u16(size));
        EXPECT_EQ(behind(lying), "no text") << "what follows cannot be found";
        std::string all = simple;
        put(all, 0, u16(size));
        EXPECT_EQ(textOf(all), size > 5 ? "1.6.0.0" : "no root");
    }
    std::string unended = next;
    put(unended, unended.size() - 2, "xx");
    EXPECT_EQ(textOf(resource({unended})).substr(0, 5), "found") << "ends with its block";
    put(unended, 6, std::string(unended.size() - 6, 'x'));
    EXPECT_EQ(textOf(resource({unended, next})), "found");
    EXPECT_EQ(textOf(std::string(6, '\1') + std::string(100, 'x')), "no root");
}

TEST_F(VersionInfo, TheFirstTranslationIsTold)
{
    std::uint16_t language = 0;
    std::uint16_t codePage = 0;
    EXPECT_TRUE(versionInfoTranslation(resource({}, u"040c04e4", 0x040C, 0x04E4), language, codePage));
    EXPECT_EQ(language, 0x040C);
    EXPECT_EQ(codePage, 0x04E4);
    const auto has = [&](const std::vector<std::string>& parts) {
        return versionInfoTranslation(block(u"VS_VERSION_INFO", 0, 0, "", parts), language, codePage);
    };
    EXPECT_TRUE(has({translation({{0x0407, 1}, {2, 3}})}));
    EXPECT_EQ(language, 0x0407);
    EXPECT_TRUE(has({block(u"VarFileInfo", 0, 1, "", {block(u"TRANSLATION", 65535, 1, "abcd")})})) << "the size of its block counts";
    EXPECT_EQ(language, 0x6261);
    EXPECT_FALSE(has({}));
    EXPECT_FALSE(has({translation({})}));
    EXPECT_FALSE(has({block(u"VarFileInfo", 0, 1, "", {block(u"Translation", 4, 0, "abc")})}));
    EXPECT_FALSE(versionInfoTranslation("", language, codePage));
}

TEST_F(VersionInfo, BytesThatEndAnywhereAreRead)
{
    const std::string data = resource({entry(u"Comments", u"c"), entry(u"FileVersion", u"1.6.0.0"), entry(u"ProductName", u"p")});
    std::size_t found = 0;
    for (std::size_t end = 0; end <= data.size(); ++end) {
        const std::string cut(data.data(), end);
        const std::string text = textOf(cut);
        found += text == "1.6.0.0";
        EXPECT_TRUE(text == "no root" || text == "no text" || std::string("1.6.0.0").compare(0, text.size(), text) == 0) << end << ": " << text;
        std::uint16_t number = 0;
        versionInfoTranslation(cut, number, number);
    }
    EXPECT_GT(found, 100u);
}

TEST_F(VersionInfo, FilesThatEndEarlyHoldNoMore)
{
    const std::string whole = peFile(simple);
    const std::size_t end = whole.find(utf16(u"1.6.0.0"));
    for (std::size_t size = 0; size < end; size += 41) {
        EXPECT_NE(textIn(whole.substr(0, size)), "1.6.0.0") << size;
    }
}

TEST_F(VersionInfo, PlacesBehindTheFileAreNotRead)
{
    const std::string whole = peFile(simple);
    const std::size_t data = PeImage::leaves + 16 + 8;
    const auto with = [&](std::size_t place, std::size_t number) {
        std::string changed = whole;
        put(changed, place, u32(number));
        return textIn(changed);
    };
    for (const std::size_t number : {0x2000u, 0x10000u, 0x1000000u, 0x70000000u, 0xFFFFFFF0u}) {
        EXPECT_NE(with(data, number), "1.6.0.0") << "the data's address";
        with(data + 4, number); // its size: what is there may do
        for (const std::size_t level : {PeImage::kinds, PeImage::names}) {
            EXPECT_EQ(with(level + 20, 0x80000000u | number), "no resource") << "a directory";
        }
        EXPECT_EQ(with(PeImage::leaves + 20, number & 0x7FFFFFFFu), "no resource") << "the description of the data";
    }
}

} // namespace
} // namespace brvUtils::os
