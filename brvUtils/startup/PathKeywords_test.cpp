#include "brvUtils/startup/EnvConfig_test.h"

#include "brvUtils/startup/DataLookup.h"
#include "brvUtils/startup/GenericPath.h"

#include <Utilities/System.h>

namespace brvUtils {
namespace {

using brvTesting::CapturedOutput;
using brvTesting::EnvironmentGuard;
using testing::ElementsAre;
using testing::HasSubstr;

class PathKeywords : public EnvConfigTest
{
protected:
    void select(const std::string& dataFile) const
    {
        configure("c", dataFile);
        declare("C=${STUDIO_PATH}/c\n");
        const CapturedOutput captured;
        EnvConfig::setConfig("C", false);
    }
};

TEST_F(PathKeywords, GiveFoldersWithTheRestBehindEach)
{
    select("DATA=${STUDIO_PATH}/data;D:/extra\nDATAcars=${STUDIO_PATH}/garage\nFIRSTnone=;x\nFIRST=y\nHOST=common\n[" + host() + "]\nHOST=mine\n");
    EXPECT_EQ(EnvConfig::getFullPath("DATA/a\\b"), "${STUDIO_PATH}/data/a/b;D:/extra/a/b");
    EXPECT_THAT(EnvConfig::getSeparatedPath("DATA/a"), ElementsAre(studio + "/data/a", "D:/extra/a"));
    EXPECT_EQ(EnvConfig::getFirstPath("DATA"), studio + "/data");
    EXPECT_EQ(EnvConfig::getFirstPath("DATA/cars/x"), studio + "/garage/x") << "the longest key";
    EXPECT_EQ(EnvConfig::getFirstPath("DATA//cars"), studio + "/garage") << "empty parts are parts of the key";
    EXPECT_EQ(EnvConfig::getFirstPath("FIRST/none"), "y/none") << "an empty first folder is no value";
    EXPECT_EQ(EnvConfig::getFullPath("FIRST/none"), ";x");
    EXPECT_EQ(EnvConfig::getFirstPath("HOST"), "mine");
    EXPECT_EQ(EnvConfig::getFirstPath("OTHER/x"), "");
    EXPECT_EQ(EnvConfig::getFullPath("OTHER"), "");
    EXPECT_THAT(EnvConfig::getSeparatedPath("OTHER"), ElementsAre(""));
    EXPECT_THAT(EnvConfig::getSeparatedPath(L"DATA/\xE9"), ElementsAre(testing::EndsWith(L"/data/\xE9"), L"D:/extra/\xE9"));
    EXPECT_EQ(EnvConfig::getRelativePath("DATA", studio + "/data/cars/small.mdl"), "cars/small.mdl");
}

TEST_F(PathKeywords, FindTheFirstFolderThatHoldsAFile)
{
    EXPECT_EQ(EnvConfig::findInPath("DATA", "x"), "") << "nothing is loaded";
    root.write("two/sub/file.txt", "");
    root.write("three/sub/file.txt", "");
    root.write("three/sub/caf\xC3\xA9.txt", "");
    select("DATA=${STUDIO_PATH}/one;${STUDIO_PATH}/two;${STUDIO_PATH}/three\nROOT=${STUDIO_PATH}\ndata=${STUDIO_PATH}/two;${STUDIO_PATH}/three\n");
    EXPECT_EQ(EnvConfig::findInPath("DATA/sub", "file.txt"), studio + "/two/sub/file.txt");
    EXPECT_EQ(EnvConfig::findInPath("DATA/sub", "caf\xC3\xA9.txt"), studio + "/three/sub/caf\xC3\xA9.txt");
    EXPECT_EQ(EnvConfig::findInPath("DATA\\sub", ""), studio + "/two/sub") << "a folder will do";
    EXPECT_EQ(EnvConfig::findInPath("DATA/sub", "nothing"), "");
    EXPECT_EQ(EnvConfig::findInPath("ROOT", ""), studio + "/");

    std::string found;
    EXPECT_TRUE(buildAbsoluteFileName("sub", "", "file.txt", found));
    EXPECT_EQ(found, studio + "/two/sub/file.txt");
    EXPECT_FALSE(buildAbsoluteFileName("sub", "no", "file.txt", found));
    EXPECT_EQ(found, "");
    EXPECT_EQ(buildVehicleModelConfigurationFile("van", "folder/", "x.mdl"), studio + "/two/vehicle/van/data/folder/x.mdl") << "where it would be";
    root.write("three/vehicle/van/data/folder/x.mdl", "");
    EXPECT_EQ(buildVehicleModelConfigurationFile("van", "folder/", "x.mdl"), studio + "/three/vehicle/van/data/folder/x.mdl");
    EXPECT_EQ(getDaemonShmKey(), "DAEMON-C-" + Utilities::System::GetEffectiveUserName());
}

TEST_F(PathKeywords, AreChangedHereOrInTheFile)
{
    const std::string file = "# folders\r\nDATA=x\r\n[" + host() + "]\r\nDATA=mine\r\n";
    select(file);
    std::vector<std::string> folders{"${STUDIO_PATH}/p", "q"};
    EnvConfig::setSeparatedPath("NEW/key", folders, false);
    EXPECT_EQ(EnvConfig::getFullPath("NEW/key"), "${STUDIO_PATH}/p;q");
    EXPECT_EQ(root.read("c/datafile.cfg"), file);
    EnvConfig::setSeparatedPath("DATA", folders, true);
    EXPECT_THAT(root.read("c/datafile.cfg"), HasSubstr("${STUDIO_PATH}/p;q\r\n[" + host() + "]\r\nDATA=mine\r\n"));
    EXPECT_EQ(EnvConfig::getFirstPath("DATA"), studio + "/p") << "the common section counts, as ever";
    EnvConfig::matchComputer();
    EXPECT_EQ(EnvConfig::getFirstPath("DATA"), "mine");
    EXPECT_EQ(EnvConfig::getFullPath("NEWkey"), "") << "was known to the copy alone";
}

TEST_F(PathKeywords, ExplainThemselves)
{
    EXPECT_EQ(EnvConfig::explain("A"), "A\n  no configuration is selected\n");
    select("A=${STUDIO_PATH}/c;${BRV_TEST_NOTHING}/x\nFIRSTnone=;y\nFIRST=x\nW/hole=z\n");
    EXPECT_THAT(EnvConfig::explain("FIRST/none"), testing::EndsWith("  first    x/none  (by a shorter entry, since the first folder is empty)\n"));
    EXPECT_THAT(EnvConfig::explain("W/hole"), HasSubstr("  entry    W/hole = z\n"));
    const EnvironmentGuard variable("BRV_TEST_NOTHING");
    EXPECT_EQ(EnvConfig::explain("B/x"), "B/x\n  file     " + studio + "/c/datafile.cfg  (configuration C)\n  no entry for it, nor for what it begins with\n");
    EXPECT_EQ(EnvConfig::explain("A/Process.xfg"),
        "A/Process.xfg\n  file     " + studio + "/c/datafile.cfg  (configuration C)\n  section  Common\n  entry    A = ${STUDIO_PATH}/c;${BRV_TEST_NOTHING}/x\n"
            + "  then     /Process.xfg\n  folder   ${STUDIO_PATH}/c/Process.xfg\n    STUDIO_PATH = " + studio + "\n    gives  " + studio
            + "/c/Process.xfg\n  folder   ${BRV_TEST_NOTHING}/x/Process.xfg\n    stays as it is: there is no variable BRV_TEST_NOTHING\n");
}

struct GenericPath : PathKeywords {};

TEST_F(GenericPath, IsResolvedInsideOutAndRepairedAfterTheRoot)
{
    const EnvironmentGuard root_("STUDIO_PATH", "C:/S");
    const EnvironmentGuard other("BRV_O", "C:/O");
    const EnvironmentGuard nested("BRV_N", "${STUDIO_PATH}n/${BRV_O}");
    const EnvironmentGuard brace("BRV_B", "{BRV_O}");
    const std::pair<const char*, const char*> rows[] = {
        {"plain", "plain"}, {"${STUDIO_PATH}config", "C:/S/config"}, {"${STUDIO_PATH}/config", "C:/S/config"}, {"${STUDIO_PATH}\\c", "C:/S\\c"},
        {"${STUDIO_PATH}", "C:/S/"}, {"${BRV_O}config", "C:/Oconfig"}, {"${PlatformName}/bin", "x64/bin"}, {"a${BRV_N}b${BRV_O}", "aC:/S/n/C:/ObC:/O"},
        {"${BRV_O}${BRV_O}", "C:/OC:/O"}, {"$${BRV_B}", "C:/O"},
    };
    for (const auto& [path, resolved] : rows) {
        EXPECT_EQ(resolveGenericPath(path), resolved);
    }
    EXPECT_EQ(resolveGenericPath(L"${BRV_O}\xE9"), L"C:/O\xE9");
    EXPECT_EQ(resolveGenericPath(L"${STUDIO_PATH}"), L"C:/S/");
}

TEST_F(GenericPath, StaysAsItIsAfterAFaultAndTellsIt)
{
    const EnvironmentGuard none("BRV_NONE");
    const EnvironmentGuard self("BRV_SELF", "${BRV_SELF}x");
    const EnvironmentGuard one("BRV_ONE", "1${BRV_TWO}");
    const EnvironmentGuard two("BRV_TWO", "2${BRV_ONE}");
    std::string many = "${BRV_E0}";
    std::vector<std::unique_ptr<EnvironmentGuard>> guards;
    for (int i = 0; i < 40; ++i) {
        const std::string next = "${BRV_E" + std::to_string(i + 1) + "}";
        guards.push_back(std::make_unique<EnvironmentGuard>("BRV_E" + std::to_string(i), next + next));
    }
    guards.push_back(std::make_unique<EnvironmentGuard>("BRV_E40", ""));
    const std::pair<std::string, std::string> rows[] = {
        {"${STUDIO_PATH/x", "Environment variable start tag \"${\" found, but no end tag \"}\"\n"},
        {"a${PlatformName}${BRV_NONE}", "No BRV_NONEenvironment variable found\n"},
        {"${BRV_SELF}", "Environment variable BRV_SELF leads back to itself, or to too much text\n"},
        {"x${BRV_ONE}y", "Environment variable BRV_ONE leads back to itself, or to too much text\n"},
    };
    for (const auto& [path, message] : rows) {
        const CapturedOutput captured;
        EXPECT_EQ(resolveGenericPath(path), path);
        EXPECT_EQ(captured.out(), message);
    }
    const CapturedOutput captured;
    EXPECT_EQ(resolveGenericPath(many), many) << "a trillion references";
}

TEST_F(GenericPath, IsMadeOfAPathWithinARoot)
{
    const EnvironmentGuard root_("STUDIO_PATH", "C:/S");
    EXPECT_EQ(EnvConfig::transformInGenericPath("c:\\s\\data\\X", false), "${STUDIO_PATH}\\data\\X");
    EXPECT_EQ(EnvConfig::transformInGenericPath("D:/elsewhere", false), "D:/elsewhere");
    EXPECT_EQ(EnvConfig::transformInGenericPath("D:/elsewhere", true), "");
    EXPECT_EQ(EnvConfig::transformInGenericPath(L"C:/S/\xE9", true), L"${STUDIO_PATH}/\xE9");
    const EnvironmentGuard local("LOCAL_STUDIO_PATH", "C:/S/user");
    EXPECT_EQ(EnvConfig::transformInGenericPath("C:/S/user/x", true), "${LOCAL_STUDIO_PATH}/x");
    EXPECT_EQ(EnvConfig::transformInGenericPath("C:/S/x", true), "${STUDIO_PATH}/x");
    EXPECT_EQ(getVeloraLocalFolderPath("${STUDIO_PATH}/x"), "C:/S/user/x");
    EXPECT_EQ(getVeloraLocalFolderPath("x${STUDIO_PATH}"), "");
    const EnvironmentGuard noLocal("LOCAL_STUDIO_PATH");
    EXPECT_EQ(getVeloraLocalFolderPath("${STUDIO_PATH}/x"), "");
}

struct DataLookup : PathKeywords {};

TEST_F(DataLookup, PrefersTheNewestFormat)
{
    const auto writeAt = [&](const std::string& name, int age) {
        root.write(name, "");
        std::filesystem::last_write_time(root.path() / name, std::filesystem::file_time_type::clock::now() - std::chrono::seconds(age));
    };
    const std::string base = studio + "/d/run";
    const std::vector<std::string> formats{".csv", ".mat"};
    EXPECT_EQ(getFileWithFormatInformation(base, formats), base + ".mat") << "none exists";
    writeAt("d/run.csv", 100);
    EXPECT_EQ(getFileWithFormatInformation(base, formats), base + ".csv");
    writeAt("d/run.mat", 200);
    EXPECT_EQ(getFileWithFormatInformation(base, formats), base + ".csv");
    writeAt("d/run.mat", 50);
    EXPECT_EQ(getFileWithFormatInformation(base, formats), base + ".mat");
    EXPECT_EQ(getFileWithFormatInformation(base + ".csv", formats), base + ".csv") << "an existing file is it";
    EXPECT_EQ(getFileWithFormatInformation(base + ".x", {}), "");

    const brvTesting::TemporaryFolder local;
    const EnvironmentGuard localGuard("LOCAL_STUDIO_PATH", slashes(local.file()));
    EXPECT_EQ(getFileWithFormatInformation(base + ".x", {".opt5.osgb"}), slashes(local.file()) + "/d/run.opt5.osgb");
}

} // namespace
} // namespace brvUtils
