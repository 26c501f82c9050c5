#include "brvUtils/platform/PlugInLoader.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileNames.h"
#include "brvUtils/os/Faults.h"
#include "brvUtils/startup/ModulePaths.h"
#include "testing/Child.h"
#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <typeinfo>

namespace {

using namespace brvTesting;
using namespace testing;
namespace fs = std::filesystem;

const std::string extension = std::string(PLUG_IN_EXTENSION).substr(1);
constexpr const char* folder = "test-plug-ins";

int answerOf(const PlugInLoader& plugIn)
{
    const auto answer = reinterpret_cast<int (*)()>(plugIn.getSymbol("answer"));
    return answer != nullptr ? answer() : 0;
}

struct Folders : PlugInLoader
{
    using PlugInLoader::getDirectories;
};

TEST(PlugInLoader, LoadsFromTheFolderBesideTheLibrary)
{
    for (const std::string subdirectory : { folder, "./test-plug-ins", "test-plug-ins\\..\\test-plug-ins" }) {
        const PlugInLoader plugIn("answering", extension, subdirectory);
        EXPECT_TRUE(plugIn.isLoaded());
        EXPECT_EQ(answerOf(plugIn), 42);
        PlugInLoader copy(plugIn);
        copy = plugIn;
        EXPECT_EQ(answerOf(copy), 42);
    }
    std::string plugIns;
    std::string library;
    ASSERT_TRUE(Folders::getDirectories(plugIns, library, "a/b"));
    EXPECT_EQ(library, brvUtils::getPath(brvUtils::getBrvUtilsPath()));
    EXPECT_EQ(plugIns, library + "\\a/b\\");
}

/// A plug-in of this name lies in a folder below the current one only.
BRV_CHILD(loadsFromTheCurrentFolder)
{
    fs::current_path(fs::u8path(arguments[0]));
    try {
        childSay(std::to_string(answerOf(PlugInLoader("copied", extension, "own-plug-ins"))));
    } catch (const std::exception& fault) {
        childSay(fault.what());
    }
    return 0;
}

TEST(PlugInLoader, LoadsFromTheFolderBelowTheCurrentOne)
{
    const TemporaryFolder here("with blanks and \xC3\xA4");
    fs::create_directory(here.path() / "own-plug-ins");
    fs::copy_file(fs::u8path(TEST_PLUG_INS) / ("answering." + extension), here.path() / "own-plug-ins" / ("copied." + extension));
    Child child("loadsFromTheCurrentFolder", { here.file() });
    child.expectLine("42");
    child.expectExit(0);
}

TEST(PlugInLoader, ThrowsWhatTheSystemSaysOfBothPlaces)
{
    try {
        const PlugInLoader plugIn("missing", extension, "no-plug-ins");
        ADD_FAILURE() << "there is no such plug-in";
    } catch (const std::runtime_error& fault) {
        EXPECT_TRUE(typeid(fault) == typeid(std::runtime_error));
        const std::string text = fault.what();
        const std::size_t second = text.find("; ");
        ASSERT_NE(second, text.npos) << text;
        EXPECT_THAT(text.substr(0, second), AllOf(HasSubstr("no-plug-ins"), HasSubstr("missing." + extension + ": ")));
        EXPECT_THAT(text.substr(second + 2), AllOf(StartsWith("no-plug-ins"), HasSubstr("missing." + extension + ": ")));
    }
    EXPECT_THROW(PlugInLoader("", "", ""), std::runtime_error);
    EXPECT_THROW(PlugInLoader("answering", "txt", folder), std::runtime_error);
}

TEST(PlugInLoader, LetsPassWhatAFunctionOfThePlugInThrows)
{
    const PlugInLoader plugIn("answering", extension, folder);
    const auto make = reinterpret_cast<void (*)()>(plugIn.getSymbol("makeEngine"));
    ASSERT_NE(make, nullptr);
    EXPECT_THROW(make(), std::runtime_error);
}

BRV_CHILD(loadsWhatThrows)
{
    brvUtils::os::endWithoutTraces();
    try {
        const PlugInLoader plugIn("throwing", extension, folder);
        childSay("loaded");
    } catch (const std::runtime_error& fault) {
        childSay("refused");
        // Others can be loaded all the same.
        childSay(std::to_string(answerOf(PlugInLoader("answering", extension, folder))));
    }
    return 0;
}

TEST(PlugInLoader, IsNotSilentAboutAPlugInThatThrowsAsItIsLoaded)
{
    Child child("loadsWhatThrows");
    if (child.readLine() == "refused") {
        child.expectLine("42");
        child.expectExit(0);
    } else {
        // Where the system's loader knows no way back.
        child.expectAbort();
        EXPECT_THAT(child.err(), HasSubstr("no engine for the plug-in"));
    }
}

} // namespace
