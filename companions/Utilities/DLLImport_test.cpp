#include "Utilities/DLLImport.h"

#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

namespace {

using namespace testing;
using Utilities::DLLImport;

std::string plugIn(const std::string& name)
{
    return std::string(TEST_PLUG_INS) + "/" + name + PLUG_IN_EXTENSION;
}

int answerOf(const DLLImport& library)
{
    const auto answer = reinterpret_cast<int (*)()>(library.getSymbol("answer"));
    return answer != nullptr ? answer() : 0;
}

TEST(DLLImport, GivesWhatALibraryExportsAndTellsWhatItLacks)
{
    DLLImport library;
    EXPECT_FALSE(library.isLoaded());
    EXPECT_EQ(library.getSymbol("answer"), nullptr);
    EXPECT_THAT(library.getLastError(), HasSubstr("answer"));
    ASSERT_TRUE(library.load(plugIn("answering"))) << library.getLastError();
    EXPECT_TRUE(library.isLoaded());
    EXPECT_EQ(answerOf(library), 42);
    EXPECT_EQ(library.getSymbol("question"), nullptr);
    EXPECT_THAT(library.getLastError(), AllOf(HasSubstr("question"), HasSubstr("answering")));
}

TEST(DLLImport, SeparatesFoldersByBothSeparators)
{
    for (const auto& [from, to] : { std::pair('/', '\\'), std::pair('\\', '/') }) {
        std::string path = plugIn("answering");
        std::replace(path.begin(), path.end(), from, to);
        DLLImport library;
        EXPECT_TRUE(library.load(path)) << library.getLastError();
    }
}

TEST(DLLImport, KeepsTheLibraryUntilTheLastCopyIsGone)
{
    bool unloaded = false;
    auto first = std::make_unique<DLLImport>();
    ASSERT_TRUE(first->load(plugIn("answering"))) << first->getLastError();
    reinterpret_cast<void (*)(bool*)>(first->getSymbol("tellAtUnload"))(&unloaded);
    DLLImport second(*first);
    DLLImport third;
    third = second;
    first.reset();
    second = DLLImport();
    EXPECT_FALSE(second.isLoaded());
    EXPECT_FALSE(unloaded);
    EXPECT_EQ(answerOf(third), 42);
    EXPECT_FALSE(third.load(plugIn("missing")));
    EXPECT_TRUE(unloaded) << "whoever loads another lets go of the first, whatever becomes of the other";
    EXPECT_FALSE(third.isLoaded());
}

/// The beginning of a program for the other system, or a little more.
std::string header(const std::string& magic)
{
    return magic + std::string(1022 - magic.size(), '\0') + "\r\n";
}

TEST(DLLImport, RefusesWhatIsNoLibraryAndNamesIt)
{
    using namespace std::string_literals;
    const brvTesting::TemporaryFolder folder;
    const std::string elf = "\x7f" "ELF\x02\x01\x01"s + std::string(9, '\0');
    const std::string pe = "MZ"s + std::string(58, '\0') + "\x40\0\0\0PE\0\0\x64\x86"s;
    std::filesystem::create_directory(folder.path() / "folder");
    const std::string extension = PLUG_IN_EXTENSION;
    for (const std::string& path : {
             folder.write("text" + extension, "this is no library\n"),
             folder.write("empty" + extension, ""),
             folder.write("elf" + extension, header(elf + "\3\0\x3E\0"s)), // for an x86
             folder.write("arm" + extension, header(elf + "\3\0\xB7\0"s)),
             folder.write("pe" + extension, header(pe)),
             folder.write("cut" + extension, pe),
             folder.write("\xC3\xA4\xE2\x82\xAC" + extension, "a name beyond ASCII\n"),
             folder.file("folder"),
             folder.file("missing" + extension),
             folder.file("no/such/folder/missing" + extension),
             ""s,
             folder.file("zero") + "\0" + extension + "x"s,
         }) {
        DLLImport library;
        EXPECT_FALSE(library.load(path)) << path;
        EXPECT_FALSE(library.isLoaded());
        const std::string& text = library.getLastError();
        EXPECT_GT(text.size(), path.size() + 4) << "it says why";
        EXPECT_THAT(text, HasSubstr(std::filesystem::u8path(path).filename().u8string()));
        EXPECT_THAT(text, Not(EndsWith("\n")));
    }
}

TEST(DLLImport, TellsWhatALibraryNeeds)
{
    if (!std::filesystem::exists(plugIn("incomplete"))) {
        GTEST_SKIP() << "the linker makes no library that lacks something";
    }
    DLLImport library;
    EXPECT_FALSE(library.load(plugIn("incomplete")));
    EXPECT_THAT(library.getLastError(), HasSubstr("functionThatNobodyHas"));
}

TEST(DLLImport, GivesTheSystemsErrorInOneLine)
{
    EXPECT_FALSE(std::filesystem::exists("no such file")); // leaves an error on some systems
    errno = ENOENT;
    EXPECT_THAT(DLLImport::systemError(), AllOf(Not(HasSubstr("\n")), Not(IsEmpty())));
}

} // namespace
