#include "brvUtils/startup/ModulePaths.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/os/ChildProcess.h"
#include "testing/Child.h"
#include "testing/ThisProgram.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace brvUtils;
namespace fs = std::filesystem;

BRV_CHILD(tellPaths)
{
    const auto say = [](const char* path) { brvTesting::childSay(path != nullptr ? path : "(null)"); };
    say(getBasePath());
    say(getComputePath());
    say(getBaseInstallPath().c_str());
    return 0;
}

TEST(ModulePaths, ReadTheRootsFromTheEnvironment)
{
    brvTesting::Child child("tellPaths", {}, { { "STUDIO_PATH", "C:\\Studio" }, { "COMPUTE_PATH", "/compute" } });
    child.expectLine("C:\\Studio");
    child.expectLine("/compute");
    child.expectLine(""); // the tests lie below no bin/x64
    child.expectExit(0);
}

TEST(ModulePaths, NameTheExecutableNotTheLibrary)
{
    EXPECT_EQ(fileName(GetModuleFilePath()), fileName(brvTesting::thisProgram()));
    EXPECT_TRUE(fs::exists(fs::u8path(GetModulePath() + "/" + fileName(GetModuleFilePath()))));
}

/// Copies of this program and of the libraries beside it, in a folder of their own.
class Installed : public testing::Test
{
protected:
    ~Installed() override
    {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    /// What the copy in `folder` takes for the install path, relative to the folder that holds all copies.
    std::string installPath(const std::string& folder)
    {
        fs::create_directories(root_ / folder);
        const fs::path program = fs::u8path(brvTesting::thisProgram());
        for (const auto& entry : fs::directory_iterator(program.parent_path())) {
            if (entry.path() == program || entry.path().extension() == ".dll") {
                fs::copy_file(entry.path(), root_ / folder / entry.path().filename());
            }
        }
        os::ChildCommand command;
        command.program = (root_ / folder / program.filename()).u8string();
        command.arguments = { std::string(brvTesting::childFlag) + "tellPaths" };
        command.pipeOutput = true;
        os::ChildProcess process;
        EXPECT_EQ(process.start(command), os::error::none);
        std::string line;
        for (int i = 0; i < 3; ++i) {
            line = process.readLine(30000).value_or("(nothing)");
        }
        EXPECT_EQ(process.wait(30000), (os::ChildExit { os::ChildExit::Kind::exited, 0 }));
        const std::size_t start = line.find(name_);
        return start == std::string::npos ? line : line.substr(start + name_.size());
    }

    std::string name_ = brvTesting::uniqueName("install");
    fs::path root_ = fs::temp_directory_path() / name_;
};

TEST_F(Installed, FindTheRootAboveTheLastBinFolderInAnyCase)
{
    EXPECT_EQ(installPath("a/Bin/x64"), "/a");
    EXPECT_EQ(installPath("b/bin/x64/bin/X64/tools"), "/b/bin/x64");
    EXPECT_EQ(installPath("c/bin/win32/bin/x64"), "/c") << "win32 is looked for first";
    EXPECT_EQ(installPath("d/bin"), "");
}

} // namespace
