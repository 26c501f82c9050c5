#include "brvUtils/platform/MachineSetting.h"

#include "brvUtils/os/MachineSetting.h"
#include "brvUtils/os/ProcessLife.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace brvTesting;
using brvUtils::machineSetting;
namespace fs = std::filesystem;

/// A key of its own, in a folder of its own where settings lie in files.
class MachineSetting : public testing::Test
{
protected:
    ~MachineSetting() override { brvUtils::os::removeMachineSettings(key); }

    /// What is stored; "(refused)" if that is nothing.
    static std::string stored(const std::string& subKey, const std::string& name)
    {
        std::string text = "(default)";
        return machineSetting(subKey, name, text) ? text : text == "(default)" ? "(refused)" : "(refused, but changed)";
    }

    /// Whether the settings of this system lie in files.
    bool inFiles() const { return !fs::is_empty(folder.path() / "settings"); }

    const std::string key = uniqueName("setting");
    const TemporaryFolder folder;
    const EnvironmentGuard place { "STUDIO_SETTINGS_DIR", folder.file("settings") };

    MachineSetting() { fs::create_directory(folder.path() / "settings"); }
};

TEST_F(MachineSetting, KeepsTheFirstText)
{
    std::string text = "first";
    EXPECT_TRUE(machineSetting(key, "name", text));
    EXPECT_EQ(text, "first");
    text = "second";
    EXPECT_TRUE(machineSetting(key, "name", text));
    EXPECT_EQ(text, "first");
    EXPECT_TRUE(machineSetting("\\" + key + "\\\\", "name", text));
    EXPECT_EQ(text, "first");
}

TEST_F(MachineSetting, StoresNoSecondNameInAKey)
{
    EXPECT_EQ(stored(key, "name"), "(default)");
    EXPECT_EQ(stored(key, "other"), "(refused)");
    EXPECT_EQ(stored(key, "nam"), "(refused)");
    EXPECT_EQ(stored(key, ""), "(refused)");
    EXPECT_EQ(stored(key + "\\below", "other"), "(default)") << "another key";
    EXPECT_EQ(stored(key, "other"), "(refused)");
}

TEST_F(MachineSetting, HoldsAnyText)
{
    using namespace std::string_literals;
    int number = 0;
    for (const std::string& text : { ""s, "a=b\nname=c\r\n"s, "%41%"s, "%"s, "100 %zz %0"s, " blanks "s, "\t\x01\x7f"s, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x9A\x97"s,
             "not UTF-8: \xE4\xFF"s, std::string(255, 'x') }) {
        const std::string subKey = key + "\\" + std::to_string(++number);
        std::string value = text;
        EXPECT_TRUE(machineSetting(subKey, "a = name\n", value)) << number;
        EXPECT_EQ(value, text);
        value = "other";
        EXPECT_TRUE(machineSetting(subKey, "a = name\n", value)) << number;
        EXPECT_EQ(value, text);
    }
    std::string cut = "before"s + '\0' + "behind";
    EXPECT_TRUE(machineSetting(key + "\\zero", "name", cut));
    EXPECT_EQ(cut, "before");
}

TEST_F(MachineSetting, RefusesTextsOfMoreThan255Bytes)
{
    for (const std::string& longText : { std::string(256, 'x'), std::string(100000, 'x') }) {
        std::string text = longText;
        const std::string subKey = key + "\\" + std::to_string(text.size());
        EXPECT_FALSE(machineSetting(subKey, "name", text));
        EXPECT_EQ(text, longText);
        EXPECT_EQ(stored(subKey, "name"), "(refused)") << "it is what is stored";
    }
}

TEST_F(MachineSetting, LeavesItsPlaceForNoKey)
{
    for (const std::string part : { "..", "../../out", "..\\..\\out", "/out", "a b", "C:", "~", "%2F..", "a=b" }) {
        EXPECT_EQ(stored(key + "\\" + part, "name"), "(default)") << part;
        EXPECT_EQ(stored(key + "\\" + part, "name"), "(default)") << part;
    }
    if (inFiles()) {
        for (const std::string part : { "..", "../out", "..\\out", "/out", ".", "" }) {
            EXPECT_EQ(stored(part, "name"), "(default)") << part;
        }
        for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
            EXPECT_TRUE(entry.path().parent_path() == folder.path() / "settings" || entry.path() == folder.path() / "settings") << entry;
        }
    }
}

TEST_F(MachineSetting, ReadsWhatPeopleWrote)
{
    EXPECT_EQ(stored(key, "name"), "(default)");
    if (!inFiles()) {
        GTEST_SKIP() << "there is an editor for the registry";
    }
    const std::string file = "settings/" + key + ".setting";
    EXPECT_EQ(folder.read(file), "name=(default)\n");
    folder.write(file, "no line of ours\n\n=empty name\nname=of%20people\nother=100 %\nlast=without line end");
    EXPECT_EQ(stored(key, "name"), "of people");
    EXPECT_EQ(stored(key, "other"), "100 %");
    EXPECT_EQ(stored(key, "last"), "without line end");
    EXPECT_EQ(stored(key, ""), "empty name");
    EXPECT_EQ(stored(key, "no line of ours"), "(refused)");
    folder.write(file, std::string("\0\xFF=\n%", 5));
    EXPECT_EQ(stored(key, "name"), "(refused)");
    folder.write(file, "");
    EXPECT_EQ(stored(key, "name"), "(default)") << "nobody came to store a text";
    fs::remove(folder.path() / file);
    fs::create_directory(folder.path() / file);
    EXPECT_EQ(stored(key, "name"), "(refused)");
}

TEST_F(MachineSetting, IsRefusedWhereNothingCanBeWritten)
{
    EXPECT_EQ(stored(key, "name"), "(default)");
    if (!inFiles()) {
        GTEST_SKIP() << "administrators may write anything";
    }
    const EnvironmentGuard noFolder("STUDIO_SETTINGS_DIR", folder.write("file", "") + "/settings");
    EXPECT_EQ(stored(key, "name"), "(refused)");
    const EnvironmentGuard below("STUDIO_SETTINGS_DIR", folder.file("new\\folder"));
    EXPECT_EQ(stored(key, "name"), "(default)") << "folders are made";
}

BRV_CHILD(storesItsNumber)
{
    childSay("ready");
    childHear();
    std::string text = std::to_string(brvUtils::os::currentProcessId());
    childSay(machineSetting(arguments[0], "winner", text) ? text : "(refused)");
    return 0;
}

TEST_F(MachineSetting, IsThatOfOneOfManyProcesses)
{
    std::vector<std::unique_ptr<Child>> children;
    std::set<std::string> numbers;
    for (int i = 0; i < 20; ++i) {
        children.push_back(std::make_unique<Child>("storesItsNumber", Arguments { key }));
        children.back()->expectLine("ready");
        numbers.insert(std::to_string(children.back()->id()));
    }
    for (const auto& child : children) {
        child->closeInput(); // all at once
    }
    std::set<std::string> results;
    for (const auto& child : children) {
        results.insert(child->readLine());
        child->expectExit(0);
    }
    EXPECT_EQ(results.size(), 1U);
    EXPECT_EQ(numbers.count(*results.begin()), 1U) << *results.begin();
    if (inFiles()) {
        for (const auto& entry : fs::directory_iterator(folder.path() / "settings")) {
            EXPECT_EQ(entry.path().extension(), ".setting") << "nothing else is left";
        }
    }
}

} // namespace
