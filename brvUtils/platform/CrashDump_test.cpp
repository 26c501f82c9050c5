#include "brvUtils/platform/CrashDump.h"

#include "brvUtils/os/ChildProcess.h"
#include "brvUtils/platform/internal/CrashPlace.h"
#include "testing/TemporaryFolder.h"
#include "testing/ThisProgram.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace brvUtils {
namespace {

using os::ChildExit;
using testing::HasSubstr;
using testing::IsEmpty;

CrashFacts facts()
{
    std::tm time{};
    time.tm_mday = 5;
    time.tm_mon = 2;
    time.tm_year = 124;
    time.tm_hour = 14;
    time.tm_min = 7;
    time.tm_sec = 9;
    return {"sim.exe", time, 4242, "PC1", "bob", "1.6.0.0", '\\'};
}

TEST(CrashPlace, isNamedAfterVersionProgramTimeProcessMachineAndUser)
{
    CrashPlace place;
    findCrashPlace("D:\\dumps", facts(), place);
    EXPECT_STREQ(place.folder.get(), "D:\\dumps\\1.6.0.0\\sim.exe");
    EXPECT_STREQ(place.file.get(), "Velora_engine_sim.exe_05_03_2024-14_07_09_4242_PC1_bob_1.6.0.0.dmp");
    EXPECT_STREQ(place.path.get(), "D:\\dumps\\1.6.0.0\\sim.exe\\Velora_engine_sim.exe_05_03_2024-14_07_09_4242_PC1_bob_1.6.0.0.dmp");
    EXPECT_TRUE(place.fits());
}

TEST(CrashPlace, takesWhatDividesPathsOutOfFileNamesAndVersionsOnly)
{
    CrashFacts odd = facts();
    odd.machine = "a b:c";
    odd.user = "d/e\\f";
    odd.version = "1 6:0/0";
    odd.separator = '/';
    CrashPlace place;
    findCrashPlace("/with blank:colon", odd, place);
    EXPECT_STREQ(place.folder.get(), "/with blank:colon/1_6_0_0/sim.exe");
    EXPECT_STREQ(place.file.get(), "Velora_engine_sim.exe_05_03_2024-14_07_09_4242_a_b_c_d_e_f_1_6_0_0.dmp");
}

TEST(CrashPlace, saysWhatDoesNotFit)
{
    const std::string almostAll(4090, 'x');
    CrashPlace place;
    findCrashPlace(almostAll.c_str(), facts(), place);
    EXPECT_FALSE(place.fits());
}

class CrashDump : public testing::Test
{
protected:
    /// Runs the program beside this one that crashes; its dumps go below the folder, and no dialog opens.
    void crash(const std::string& way, const std::string& argument = "")
    {
        const std::filesystem::path here = std::filesystem::u8path(brvTesting::thisProgram());
        os::ChildCommand command;
        command.program = (here.parent_path() / "crasher").u8string() + here.extension().u8string();
        command.arguments = {way, argument};
        command.environment = {{"STUDIO_DUMP_DIR", folder.file("dumps")}, {"STUDIO_DUMP_NO_MSG", "1"}, {"COMPUTERNAME", "PC 1"}, {"USERNAME", "a:b"}};
        for (const auto& variable : variables) {
            command.environment.push_back(variable);
        }
        command.pipeError = true;
        os::ChildProcess process;
        ASSERT_EQ(process.start(command), os::error::none);
        end = process.wait(30'000);
        id = process.id();
        said = process.errorOutput();
    }

    /// All files below the folder for dumps.
    std::vector<std::filesystem::path> dumps() const
    {
        std::vector<std::filesystem::path> found;
        if (std::filesystem::exists(folder.path() / "dumps")) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path() / "dumps")) {
                if (entry.is_regular_file()) {
                    found.push_back(entry.path());
                }
            }
        }
        return found;
    }

    /// The bytes of memory that a whole dump has behind its list of all memory (the stream 9), which stand at its end; 0
    /// without that list.
    std::uint64_t memoryIn(const std::filesystem::path& dump) const
    {
        std::ifstream file(dump, std::ios::binary);
        const auto read = [&](std::uint64_t at, auto value) {
            file.seekg(static_cast<std::streamoff>(at));
            file.read(reinterpret_cast<char*>(&value), sizeof value);
            return value;
        };
        const auto streams = read(8, std::uint32_t{});
        const auto directory = read(12, std::uint32_t{});
        std::uint64_t sum = 0;
        for (std::uint32_t stream = 0; stream < streams; ++stream) {
            if (read(directory + stream * 12, std::uint32_t{}) != 9) {
                continue;
            }
            const auto list = read(directory + stream * 12 + 8, std::uint32_t{});
            const auto ranges = read(list, std::uint64_t{});
            for (std::uint64_t range = 0; range < ranges; ++range) {
                sum += read(list + 16 + range * 16 + 8, std::uint64_t{});
            }
            EXPECT_EQ(read(list + 8, std::uint64_t{}) + sum, std::filesystem::file_size(dump));
        }
        return sum;
    }

    bool isDump(const std::string& name) const { return folder.read(name).substr(0, 4) == "MDMP"; }

    const ChildExit good{ChildExit::Kind::exited, 0};
    brvTesting::TemporaryFolder folder{"crash"};
    std::vector<std::pair<std::string, std::string>> variables;
    ChildExit end;
    std::uint32_t id = 0;
    std::string said;
};

TEST_F(CrashDump, liesInAFolderOfVersionAndProgramAndIsAnnounced)
{
    crash("null");
    EXPECT_EQ(end, good);
    ASSERT_EQ(dumps().size(), 1u);
    const std::filesystem::path file = dumps()[0];
    const std::string program = file.parent_path().filename().u8string();
    EXPECT_THAT(program, testing::StartsWith("crasher"));
    EXPECT_THAT(file.parent_path().parent_path().filename().u8string(), testing::StartsWith("1.6.0."));
    EXPECT_THAT(file.filename().u8string(), testing::StartsWith("Velora_engine_" + program + "_"));
    EXPECT_THAT(file.filename().u8string(), HasSubstr("_" + std::to_string(id) + "_PC_1_a_b_1.6.0."));
    EXPECT_THAT(said, HasSubstr("Crash Dump generated here: "));
    EXPECT_THAT(said, HasSubstr(file.filename().u8string() + "\n"));
}

TEST_F(CrashDump, isNotMadeWhenNobodyWantsOne)
{
    variables = {{"STUDIO_DISABLE_DUMP", "1"}};
    crash("null");
    EXPECT_EQ(end, good);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "dumps"));
    EXPECT_THAT(said, IsEmpty());

    variables = {{"STUDIO_PROCESS_DUMP_LEVEL", "NONE"}};
    crash("null");
    EXPECT_EQ(end, good);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "dumps"));
    EXPECT_THAT(dumps(), IsEmpty());
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(CrashDump, thatCannotBeWrittenIsSaid)
{
    folder.write("dumps", "a file where the folder should be");
    crash("null");
    EXPECT_EQ(end, good);
    EXPECT_THAT(said, HasSubstr("The dump file named : \"" + folder.file("dumps")));
    EXPECT_THAT(said, testing::EndsWith("\" could not be created for an unknown reason.\n\n\n"));

    variables = {{"STUDIO_DUMP_DIR", std::string(5000, 'x')}};
    crash("null");
    EXPECT_EQ(end, good);
    EXPECT_THAT(said, HasSubstr("could not be created"));
}

TEST_F(CrashDump, ownFilterSaysWhatHappensThen)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer runs handlers with their signals blocked";
#endif
    crash("own-filter", "1");
    EXPECT_EQ(end.kind, ChildExit::Kind::exited);
    EXPECT_NE(end.code, 0);
    EXPECT_THAT(said, HasSubstr("asked"));
    EXPECT_THAT(said, testing::Not(HasSubstr("none before")));
    const ChildExit byFilter = end;

    crash("no-filter");
    const ChildExit bySystem = end;
    EXPECT_FALSE(bySystem == good);
    crash("own-filter", "0");
    EXPECT_EQ(end, bySystem);

    crash("own-filter", "-1");
    EXPECT_EQ(end, byFilter);
    EXPECT_THAT(said, HasSubstr("asked again"));
    EXPECT_THAT(dumps(), IsEmpty());

    crash("filter-crashes");
    EXPECT_EQ(end, good);
}

TEST_F(CrashDump, holdsAllMemoryAtTheLevelFull)
{
    variables = {{"STUDIO_PROCESS_DUMP_LEVEL", "full"}};
    crash("null");
    ASSERT_EQ(dumps().size(), 1u);
    EXPECT_EQ(memoryIn(dumps()[0]), 0u);
    std::filesystem::remove(dumps()[0]);

    variables = {{"STUDIO_PROCESS_DUMP_LEVEL", "FULL"}};
    crash("null");
    EXPECT_EQ(end, good);
    ASSERT_EQ(dumps().size(), 1u);
    EXPECT_GT(memoryIn(dumps()[0]), 1'000'000u);
}

TEST_F(CrashDump, isWrittenWhenAskedFor)
{
    folder.write("there.dmp", std::string(10'000'000, 'x'));
    crash("own-dump", folder.file("there.dmp"));
    EXPECT_THAT(said, HasSubstr("dumped"));
    EXPECT_TRUE(isDump("there.dmp"));
    EXPECT_LT(std::filesystem::file_size(folder.path() / "there.dmp"), 10'000'000u);

    crash("generate", folder.file("now.dmp"));
    EXPECT_EQ(end, good);
    EXPECT_TRUE(isDump("now.dmp"));

    crash("generate", folder.file("no/such/folder.dmp"));
    EXPECT_EQ(end, (ChildExit{ChildExit::Kind::exited, 1}));
}

} // namespace
} // namespace brvUtils
