#include "Utilities/ConfigFile.h"

#include "brvUtils/os/FileSystem.h"
#include "testing/Child.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

namespace Utilities {
namespace {

using namespace brvTesting;
using Names = std::list<std::string>;

TEST(ConfigFile, ReadsEntriesOfSectionsWhateverTheLineEnd)
{
    const TemporaryFolder folder;
    const std::string lines[] = {"before=1", "# key = comment", "  ;key = comment", "", "  [ Host name ]  x",
        "\tkey \t=  a = b ; c # d  ", "key2==", "no entry", "= nothing", "[open", "empty =", "[Common]", "key = common",
        "before = 2", "Key=capital", "[Host name]", "key3=\"quoted \"", "key2 = the last"};
    for (const std::string lineEnd : {"\n", "\r\n"}) {
        std::string text = lineEnd == "\n" ? "" : "\xEF\xBB\xBF";
        for (const std::string& line : lines) {
            text += line + lineEnd;
        }
        text.resize(text.size() - lineEnd.size());
        ConfigFile file(folder.write("file.cfg", text));
        ASSERT_TRUE(file.isLoaded());
        EXPECT_EQ(file.getVariablesNames("Common"), (Names{"before", "key", "Key"}));
        EXPECT_EQ(file.getVariablesNames("Host name"), (Names{"key", "key2", "empty", "key3"}));
        EXPECT_EQ(file.getVariablesNames("host name"), Names());
        EXPECT_EQ(file["key"], "common");
        EXPECT_EQ(file["before"], "2");

        file.setSection("Host name");
        EXPECT_EQ(file["key"], "a = b ; c # d");
        EXPECT_EQ(file["key2"], "the last");
        EXPECT_EQ(file["key3"], "\"quoted \"");
        EXPECT_EQ(file["before"], "2"); // from Common
        std::string value = "left";
        EXPECT_FALSE(file.readString("before", value));
        EXPECT_EQ(value, "left");
        EXPECT_TRUE(file.readString("empty", value));
        EXPECT_EQ(value, "");
    }
}

TEST(ConfigFile, ReadsNumbersThatAreNothingElse)
{
    const TemporaryFolder folder;
    ConfigFile file(folder.write("file.cfg",
        "least=-2147483648\nmost=+2147483647\nmore=2147483648\n2=- 2\n3=+-3\n4=4x\n5=\n6=0x6\n"
        "hexa=0xFFFFffff\nbare=1a\nlong=100000000\n7=0x\n8=0x0x8\n9=-9\n"));
    int value = 7;
    EXPECT_TRUE(file.readInt("most", value) && value == 2147483647);
    EXPECT_TRUE(file.readInt("least", value) && value == -2147483647 - 1);
    unsigned int hexa = 7;
    EXPECT_TRUE(file.readHexaUnsignedInt("bare", hexa) && hexa == 0x1A);
    EXPECT_TRUE(file.readHexaUnsignedInt("hexa", hexa) && hexa == 0xFFFFFFFF);
    for (const std::string key : {"more", "2", "3", "4", "5", "6", "none"}) {
        EXPECT_FALSE(file.readInt(key, value)) << key;
    }
    for (const std::string key : {"long", "5", "7", "8", "9", "none"}) {
        EXPECT_FALSE(file.readHexaUnsignedInt(key, hexa)) << key;
    }
    EXPECT_EQ(value, -2147483647 - 1);
    EXPECT_EQ(hexa, 0xFFFFFFFF);
}

TEST(ConfigFile, SavesWhatChangedAndKeepsEveryOtherByte)
{
    const std::string text = "\xEF\xBB\xBF# head\r\n first=1 \r\n\r\n[B]\n  a\t=\told  \r\n# about b\r\nb=\r\njunk\n"
                             "[A]\r\n[B]\r\na=older\r\n;\r\nlast=";
    const auto replaced = [&text](const std::string& part, const std::string& other) {
        return std::string(text).replace(text.find(part), part.size(), other);
    };
    const struct
    {
        std::string expected;
        std::function<void(ConfigFile&)> change;
    } cases[] = {
        {text, [](ConfigFile&) {}},
        {text, [](ConfigFile& file) { file.setEntry("b", "B", "not saved"); }},
        {text, [](ConfigFile& file) { file.deleteEntry("a", "A"); }},
        {replaced("older", "new; \"value\""),
            [](ConfigFile& file) { file.modifyEntry(" a ", "B", "new; \"value\" "); }},
        {replaced("b=", "b=x"),
            [](ConfigFile& file) { file.deleteEntry("b", "B"); file.modifyEntry("b", "B", "x"); }},
        {replaced("b=\r\n", ""),
            [](ConfigFile& file) { file.modifyEntry("b", "B", "x"); file.deleteEntry("b", "B"); }},
        {replaced(" first=1 \r\n", " first=1 \r\nc = 1\r\nd = 2\r\n"),
            [](ConfigFile& file) { file.modifyEntry("c", "Common", "1"); file.modifyEntry("d", "Common", "2"); }},
        {replaced("[A]\r\n", "[A]\r\nc = 1\r\n"), [](ConfigFile& file) { file.modifyEntry("c", "A", "1"); }},
        {text + "\r\nz = 1\r\ny = 2",
            [](ConfigFile& file) { file.modifyEntry("z", "B", "1"); file.modifyEntry("y", "B", "2"); }},
        {replaced("\r\nlast=", "\r\nz = 1\r\n"),
            [](ConfigFile& file) { file.deleteEntry("last", "B"); file.modifyEntry("z", "B", "1"); }},
        {text + "\r\n\r\n[New]\r\nz = 1\r\ny = 2\r\n",
            [](ConfigFile& file) { file.modifyEntry("z", "New", "1"); file.modifyEntry("y", "New", "2"); }},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        ConfigFile file(folder.write("file.cfg", text));
        each.change(file);
        EXPECT_TRUE(file.save(folder.file("copy.cfg"))); // the whole of it, though a longer one is there
        EXPECT_TRUE(file.save(file.getFileName()));
        EXPECT_EQ(folder.read("file.cfg"), each.expected);
        EXPECT_EQ(folder.read("copy.cfg"), each.expected);
        EXPECT_TRUE(file.save(folder.file("copy.cfg"))); // with what is saved already
        EXPECT_EQ(folder.read("copy.cfg"), each.expected);
    }

    ConfigFile file(folder.write("file.cfg", text)); // a key that stands twice is gone for good
    file.deleteEntry("a", "B");
    EXPECT_TRUE(file.save(file.getFileName()) && file.load(file.getFileName()));
    file.modifyEntry("forgotten", "B", "by the next load");
    EXPECT_TRUE(file.load(file.getFileName()) && file.save(file.getFileName()) && file.load(file.getFileName()));
    EXPECT_EQ(file.getVariablesNames("B"), (Names{"b", "last"}));
}

TEST(ConfigFile, GivesBackWhatItTookAndRefusesTheRest)
{
    const TemporaryFolder folder;
    const std::string fileName = folder.file("d\xC3\xA9j\xC3\xA0 'vu' \xE6\xBC\xA2.cfg");
    const std::vector<std::string> good = {"a b", "\xC3\xA9\xF0\x9F\x9A\x97", "\"a", "it's", "\xFF", "a#;$"};
    ConfigFile file;
    for (const std::string& section : good) {
        for (std::size_t i = 0; i < good.size(); ++i) {
            EXPECT_TRUE(file.modifyEntry(good[i], section, good[good.size() - 1 - i]));
        }
        for (const std::string bad : {"", " ", "a=b", "[a]", "#a", ";a", "a\nb"}) {
            EXPECT_FALSE(file.modifyEntry(bad, section, "value")) << bad;
        }
    }
    EXPECT_FALSE(file.modifyEntry("key", "a]b", "value"));
    EXPECT_FALSE(file.modifyEntry("key", "a\nb", "value"));
    EXPECT_FALSE(file.modifyEntry("key", "section", "a\nb"));
    EXPECT_TRUE(file.save(fileName));

    ASSERT_TRUE(file.load(fileName));
    for (const std::string& section : good) {
        file.setSection(section);
        EXPECT_EQ(file.getVariablesNames(section), Names(good.begin(), good.end()));
        for (std::size_t i = 0; i < good.size(); ++i) {
            EXPECT_EQ(file[good[i]], good[good.size() - 1 - i]);
        }
    }
}

TEST(ConfigFile, KnowsTheFileItLoadedAndHasNoneBefore)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file.cfg", "\xEF\xBB\xBF");
    const std::string otherWay = folder.file() + "/.\\\\./file.cfg";
    ConfigFile ours(otherWay);
    ConfigFile theirs(path);
    EXPECT_TRUE(ours.modifyEntry("ours", "1"));
    theirs.modifyEntry("theirs", "Common", "1");
    EXPECT_TRUE(theirs.save(otherWay)); // merged
    EXPECT_EQ(folder.read("file.cfg"), "\xEF\xBB\xBF[Common]\nours = 1\ntheirs = 1\n");
    EXPECT_TRUE(theirs.save(folder.write(".cfg", "replaced"))); // another name
    EXPECT_EQ(folder.read(".cfg"), folder.read("file.cfg"));

    ConfigFile fresh;
    ConfigFile missing(folder.file("missing.cfg"));
    for (ConfigFile* file : {&fresh, &missing}) {
        file->modifyEntry("key", "Common", "value");
        for (const std::string name : {"first.cfg", "missing.cfg", "second.cfg"}) {
            EXPECT_TRUE(file->save(folder.file(name)));
            EXPECT_NE(folder.read(name).find("key = value\n"), std::string::npos);
            std::filesystem::remove(folder.path() / name);
        }
    }
}

TEST(ConfigFile, LeavesWhatOthersSavedMeanwhile)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file.cfg", "[Common]\ngone=1\nours=1\ntheirs=1\n");
    ConfigFile ours(path);
    ConfigFile theirs(path);
    EXPECT_TRUE(theirs.modifyEntry("theirs", "2"));
    ours.setEntry("theirs", "Common", "not saved");
    ours.deleteEntry("gone", "Common");
    EXPECT_TRUE(ours.modifyEntry("ours", "2")); // and what else is due
    EXPECT_EQ(folder.read("file.cfg"), "[Common]\nours=2\ntheirs=2\n");

    EXPECT_TRUE(theirs.modifyEntry("gone", "2"));
    EXPECT_TRUE(ours.modifyEntry("ours", "3")); // what was saved is not due again
    EXPECT_EQ(folder.read("file.cfg"), "[Common]\nours=3\ntheirs=2\ngone = 2\n");

    // A save that fails stays due.
    std::filesystem::remove(folder.path() / "file.cfg");
    std::filesystem::create_directory(folder.path() / "file.cfg");
    EXPECT_FALSE(ours.modifyEntry("ours", "4"));
    std::filesystem::remove(folder.path() / "file.cfg");
    EXPECT_TRUE(ours.save(path));
    EXPECT_EQ(folder.read("file.cfg"), "[Common]\nours = 4\n");
}

constexpr int entriesOfEach = 50;

BRV_CHILD(addsEntries)
{
    ConfigFile file(arguments[0]);
    file.setSection("Host \"" + arguments[1] + "\"");
    childSay("ready");
    childHear();
    for (int i = 0; i < entriesOfEach; ++i) {
        file.modifyEntry(arguments[1] + std::to_string(i), "Common", "x");
        if (!file.modifyEntry(std::to_string(i), "y")) {
            return 1;
        }
    }
    return 0;
}

TEST(ConfigFile, LosesNoEntryOfTwoProcessesThatAddAtTheSameTime)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("file.cfg");
    ASSERT_TRUE(ConfigFile::createEmptyConfigFile(path));
    Child a("addsEntries", {path, "a"});
    Child b("addsEntries", {path, "b"});
    a.expectLine("ready");
    b.expectLine("ready");
    a.send("go");
    b.send("go");
    for (int i = 0; i < 200; ++i) { // readers always find a whole file, and stand in nobody's way
        EXPECT_TRUE(ConfigFile(path).isLoaded());
    }
    a.expectExit(0);
    b.expectExit(0);
    const ConfigFile file(path);
    EXPECT_EQ(file.getVariablesNames("Common").size(), 2U * entriesOfEach);
    EXPECT_EQ(file.getVariablesNames("Host \"a\"").size(), 1U * entriesOfEach);
    EXPECT_EQ(file.getVariablesNames("Host \"b\"").size(), 1U * entriesOfEach);
}

const std::string largeValue(100'000, 'v');

BRV_CHILD(savesForEver)
{
    ConfigFile file(arguments[0]);
    for (int i = 0;; ++i) {
        if (!file.modifyEntry("a", largeValue + std::to_string(i % 10)) || (i == 3 && (childSay("saves"), false))) {
            return 1;
        }
    }
}

TEST(ConfigFile, IsWholeAfterItsSaverWasKilled)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file.cfg", "a=\nend=1\n");
    for (int i = 0; i < 5; ++i) {
        Child child("savesForEver", {path});
        child.expectLine("saves");
        child.kill();
        ConfigFile file(path);
        EXPECT_EQ(file["a"].substr(0, largeValue.size()), largeValue);
        EXPECT_EQ(folder.read("file.cfg").substr(largeValue.size() + 3), "\nend=1\n");
        EXPECT_TRUE(file.modifyEntry("a", largeValue + "0")); // no lock is left behind
    }
}

TEST(ConfigFile, IsWholeAfterTheDiskWasFull)
{
    const TemporaryFolder folder;
    const std::string place = '"' + folder.file() + '"';
    if (std::system(("mount -t tmpfs -o size=64k brv " + place + " 2>&1").c_str()) != 0) {
        GTEST_SKIP() << "needs a small file system, which only root can mount";
    }
    const std::string path = folder.write("file.cfg", "a=1\n");
    ConfigFile file(path);
    EXPECT_FALSE(file.modifyEntry("a", largeValue));
    EXPECT_EQ(folder.read("file.cfg"), "a=1\n");
    EXPECT_TRUE(file.modifyEntry("a", "2"));
    EXPECT_EQ(folder.read("file.cfg"), "a=2\n");
    EXPECT_EQ(std::system(("umount " + place).c_str()), 0);
}

TEST(ConfigFile, LoadsAnythingOrSaysThatItCannot)
{
    const TemporaryFolder folder;
    ConfigFile file(folder.write("good.cfg", "[Common]\na=1\n[S]\nb=2\n"));
    file.setSection("S");
    for (const std::string& path : {folder.file("missing.cfg"), folder.file("none/file.cfg"), folder.file(), std::string()}) {
        EXPECT_FALSE(file.load(path));
        EXPECT_FALSE(file.isLoaded());
        EXPECT_EQ(file.getFileName(), path);
        EXPECT_EQ(file["a"] + file["b"], "");
    }
    EXPECT_TRUE(file.load(folder.file("good.cfg")));
    EXPECT_EQ(file["a"] + file["b"], "12"); // the section is still selected

    constexpr std::size_t size = 10'000'000;
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * i >> 7);
    }
    std::string entries = "[S]\n";
    while (entries.size() < size) {
        const std::string number = std::to_string(entries.size());
        entries += "KEY_" + number + " = ${STUDIO_PATH}/data/" + number + "\r\n";
    }
    const std::string odd[] = {"", bytes, std::string(size, '='), std::string(size, '['), std::string(size, '\n'), entries};
    for (const std::string& text : odd) {
        EXPECT_TRUE(file.load(folder.write("odd.cfg", text)));
        EXPECT_EQ(file["a"], "");
    }
    EXPECT_EQ(file["KEY_4"], "${STUDIO_PATH}/data/4");
}

TEST(ConfigFile, CreatesAFileWhereThereIsNone)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(ConfigFile::createEmptyConfigFile(folder.file("new.cfg")));
    EXPECT_TRUE(ConfigFile(folder.file("new.cfg")).isLoaded());
    EXPECT_EQ(folder.read("new.cfg"), "");
    EXPECT_TRUE(ConfigFile::createEmptyConfigFile(folder.write("old.cfg", "old")));
    EXPECT_EQ(folder.read("old.cfg"), "old");
    EXPECT_FALSE(ConfigFile::createEmptyConfigFile(folder.file("no folder/new.cfg")));
    EXPECT_FALSE(ConfigFile::createEmptyConfigFile(folder.file()));
    EXPECT_FALSE(ConfigFile::createEmptyConfigFile(""));
    EXPECT_FALSE(ConfigFile().modifyEntry("key", "value"));

    for (int i = 0; i < 20; ++i) { // a lock may make an empty file, which goes away with it
        auto lock = std::make_unique<brvUtils::os::FileLock>(folder.file("locked.cfg"));
        std::thread creator([&] { EXPECT_TRUE(ConfigFile::createEmptyConfigFile(folder.file("locked.cfg"))); });
        std::this_thread::yield();
        lock.reset();
        creator.join();
        EXPECT_EQ(folder.read("locked.cfg"), "");
        std::filesystem::remove(folder.path() / "locked.cfg");
    }
}

} // namespace
} // namespace Utilities
