#include "brvUtils/startup/ModulePaths.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/os/ChildProcess.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace brvUtils;
namespace fs = std::filesystem;

BRV_CHILD(tellInstallPath)
{
    brvTesting::childSay(getBaseInstallPath());
    return 0;
}

BRV_CHILD(tellLibraryPath)
{
    fs::current_path(fs::u8path(arguments[0]));
    brvTesting::childSay(getBrvUtilsPath());
    return 0;
}

TEST(ModulePaths, ReadTheRootsFromTheEnvironmentAtEachCall)
{
    const brvTesting::EnvironmentGuard studio("STUDIO_PATH", "C:\\Studio");
    const brvTesting::EnvironmentGuard compute("COMPUTE_PATH", "/compute");
    EXPECT_STREQ(getBasePath(), "C:\\Studio");
    EXPECT_STREQ(getComputePath(), "/compute");
    const brvTesting::EnvironmentGuard noStudio("STUDIO_PATH");
    const brvTesting::EnvironmentGuard noCompute("COMPUTE_PATH");
    EXPECT_EQ(getBasePath(), nullptr);
    EXPECT_EQ(getComputePath(), nullptr);
}

TEST(ModulePaths, NameTheExecutableNotTheLibrary)
{
    EXPECT_EQ(fileName(GetModuleFilePath()), fileName(brvTesting::thisProgram()));
    EXPECT_TRUE(fs::exists(fs::u8path(GetModulePath() + "/" + fileName(GetModuleFilePath()))));
}

TEST(ModulePaths, NameTheLibraryByAFullPath)
{
    const std::string path = getBrvUtilsPath();
    EXPECT_TRUE(fs::u8path(path).is_absolute()) << path;
    EXPECT_TRUE(fs::is_regular_file(fs::u8path(path))) << path;
    EXPECT_NE(fileName(path).find("brvUtils"), std::string::npos) << path;
}

TEST(ModulePaths, NameTheLibraryAsItLiesWhereverTheLoaderLookedForIt)
{
    const fs::path library = fs::u8path(getBrvUtilsPath());
    if (library.extension() == ".dll") {
        GTEST_SKIP() << "the folder of the program comes first";
    }
    const brvTesting::TemporaryFolder root("brv test of \xC3\xA4");
    fs::create_directory(root.path() / "there");
    fs::copy_file(library, root.path() / "there" / "libbrvUtils.so.copy");
    fs::create_symlink(root.path() / "there" / "libbrvUtils.so.copy", root.path() / "libbrvUtils.so.1");
    const fs::path before = fs::current_path();
    fs::current_path(root.path());
    brvTesting::Child child("tellLibraryPath", { "/" }, { { "LD_LIBRARY_PATH", ".:" + library.parent_path().u8string() } });
    fs::current_path(before);
    child.expectLine(root.file("there/libbrvUtils.so.copy"));
    child.expectExit(0);
}

/// What a copy of this program in a subfolder takes for the install path; the part of it below `root`.
std::string installPathSeenFrom(const brvTesting::TemporaryFolder& root, const std::string& subfolder)
{
    const fs::path program = fs::u8path(brvTesting::thisProgram());
    const fs::path folder = root.path() / subfolder;
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(program.parent_path())) {
        if (entry.path() == program || entry.path().extension() == ".dll") {
            fs::copy_file(entry.path(), folder / entry.path().filename());
        }
    }
    os::ChildCommand command;
    command.program = (folder / program.filename()).u8string();
    command.arguments = { std::string(brvTesting::childFlag) + "tellInstallPath" };
    command.pipeOutput = true;
    os::ChildProcess process;
    EXPECT_EQ(process.start(command), os::error::none);
    const std::string line = process.readLine(30000).value_or("(nothing)");
    EXPECT_EQ(process.wait(30000), (os::ChildExit { os::ChildExit::Kind::exited, 0 }));
    const std::string name = fileName(root.file());
    const std::size_t position = line.find(name);
    return position == std::string::npos ? line : line.substr(position + name.size());
}

TEST(ModulePaths, FindTheInstallPathAboveTheLastBinFolderInAnyCase)
{
    const brvTesting::TemporaryFolder root;
    EXPECT_EQ(installPathSeenFrom(root, "a/Bin/x64"), "/a");
    EXPECT_EQ(installPathSeenFrom(root, "b/bin/x64/bin/X64/tools"), "/b/bin/x64");
    EXPECT_EQ(installPathSeenFrom(root, "c/bin/win32/bin/x64"), "/c") << "win32 is looked for first";
    EXPECT_EQ(installPathSeenFrom(root, "d/bin"), "");
}

} // namespace
