#include "brvUtils/platform/RFileVersionInfo.h"

#include "brvUtils/os/VersionResource_test.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace versionTest;

namespace brvUtils {
namespace {

/// What is thrown for a file; empty when nothing is.
std::string refusal(const std::string& file)
{
    try {
        RFileVersionInfo version(file);
        return "";
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

std::string missing(const RFileVersionInfo& version, const std::string& name)
{
    try {
        return "found: " + version.key(name);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

class RFileVersionInfoTest : public testing::Test
{
protected:
    std::string pe(const std::string& resource) { return folder.write("module.dll", peFile(resource)); }

    brvTesting::TemporaryFolder folder;
};

TEST_F(RFileVersionInfoTest, TellsTheEntriesOfItsFirstLanguage)
{
    const std::string french = block(u"040c04e4", 0, 1, "", {entry(u"FileVersion", u"1.6, fran\u00e7ais"), entry(u"Team", u"\u5236\u52d5")});
    const std::string english = block(u"040904b0", 0, 1, "", {entry(u"FileVersion", u"1.6, English"), entry(u"Comments", u"none")});
    const std::string file = pe(block(u"VS_VERSION_INFO", 52, 0, std::string(52, '\0'),
        {block(u"StringFileInfo", 0, 1, "", {english, french}), translation({{0x040C, 0x04E4}, {0x0409, 0x04B0}})}));
    const RFileVersionInfo version(file);
    EXPECT_EQ(version.module(), file);
    EXPECT_EQ(version.key("FileVersion"), "1.6, fran\xC3\xA7" "ais");
    EXPECT_EQ(version.key("fileVERSION"), "1.6, fran\xC3\xA7" "ais");
    EXPECT_EQ(version.key("Team"), "\xE5\x88\xB6\xE5\x8B\x95");

    const std::map<std::string, std::string> entries = version.key();
    std::string names;
    for (const auto& [name, text] : entries) {
        names += name + ' ';
        EXPECT_EQ(text, name == "FileVersion" ? version.key(name) : "") << name;
    }
    EXPECT_EQ(names, "Comments CompanyName FileDescription FileVersion InternalName LegalCopyright OriginalFilename ProductName ProductVersion ");
    EXPECT_EQ(missing(version, "Comments"), "Unable to retrieve Comments value in " + file);
    EXPECT_EQ(missing(version, ""), "Unable to retrieve  value in " + file);
    EXPECT_EQ(missing(version, "FileVersion\\x"), "Unable to retrieve FileVersion\\x value in " + file);
}

TEST_F(RFileVersionInfoTest, SaysWhyThereIsNone)
{
    const std::string nowhere = folder.file("nowhere.dll");
    EXPECT_EQ(refusal(nowhere), "Unable to compute information for " + nowhere);
    EXPECT_EQ(refusal(""), "Unable to compute information for ");
    EXPECT_EQ(refusal(folder.file()), "Unable to compute information for " + folder.file());
    for (const std::string& content : {std::string("Just a text.\n"), std::string(), PeImage().bytes()}) {
        const std::string file = folder.write("text.exe", content);
        EXPECT_EQ(refusal(file), "Unable to compute information for " + file);
    }
    for (const std::string& resource : {std::string(8, '\0'), std::string(200, 'x'), block(u"VS_VERSION_INFO", 0, 0, ""),
             block(u"VS_VERSION_INFO", 0, 0, "", {block(u"VarFileInfo", 0, 1, "", {block(u"Translation", 2, 0, "xx")})})}) {
        const std::string file = pe(resource);
        EXPECT_EQ(refusal(file), "Unable to query values in " + file);
    }
}

TEST_F(RFileVersionInfoTest, CopiesOutliveWhatTheyWereCopiedFrom)
{
    RFileVersionInfo last(pe(resource({entry(u"FileVersion", u"first")})));
    {
        const RFileVersionInfo other(folder.write("other.dll", peFile(resource({entry(u"FileVersion", u"other")}))));
        const RFileVersionInfo copy(other);
        last = copy;
    }
    EXPECT_EQ(last.key("FileVersion"), "other");
    EXPECT_EQ(last.module(), folder.file("other.dll"));
}

TEST_F(RFileVersionInfoTest, TheLibraryHasOne)
{
    const std::map<std::string, std::string> entries = RFileVersionInfo(BRVUTILS_FILE).key();
    EXPECT_EQ(entries.at("FileVersion"), BRVUTILS_VERSION);
    EXPECT_EQ(entries.at("ProductVersion"), BRVUTILS_VERSION);
    EXPECT_EQ(entries.at("ProductName"), "brvUtils");
    EXPECT_EQ(entries.at("InternalName"), "brvUtils");
    EXPECT_NE(entries.at("OriginalFilename").find("brvUtils."), std::string::npos);
    EXPECT_EQ(entries.at("FileDescription"), "Shared library of a distributed driving-simulation suite");
    EXPECT_EQ(entries.at("Comments"), "");
}

TEST_F(RFileVersionInfoTest, NamesOfFilesAreUtf8)
{
    const std::string file = folder.write("\xC3\xBC \xE5\x88\xB6.dll", peFile(resource({entry(u"FileVersion", u"1")})));
    EXPECT_EQ(RFileVersionInfo(file).key("FileVersion"), "1");
}

} // namespace
} // namespace brvUtils
