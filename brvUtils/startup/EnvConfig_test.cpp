#include "brvUtils/startup/EnvConfig_test.h"

#include "brvUtils/startup/GenericPath.h"
#include "brvUtils/startup/ModulePaths.h"
#include "testing/Child.h"

#include <Utilities/System.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace brvUtils {
namespace {

using brvTesting::CapturedOutput;
using brvTesting::EnvironmentGuard;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string rule = "========================================\n";

TEST_F(EnvConfigTest, ListsWhatExistsAndTheComputersOwnEntriesCount)
{
    configure("a", "");
    configure("b", "");
    configure("other a", "");
    declare("A=${STUDIO_PATH}/a\nB=${STUDIO_PATH}b/\nGone=${STUDIO_PATH}/gone\n[" + host() + "]\nA=" + studio + "/other a\nH = " + studio + "/b\n[elsewhere]\nX="
        + studio + "\n");
    const CapturedOutput captured;
    EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("A", "B", "H"));
    EXPECT_EQ(captured.out(), studio + "/configurations.cfg\n");
    EXPECT_EQ(EnvConfig::getConfigPath("A"), studio + "/other a");
    EXPECT_EQ(EnvConfig::getConfigPath("B"), studio + "/b");
    EXPECT_EQ(EnvConfig::getConfigPath("unknown"), "");
    EXPECT_EQ(EnvConfig::getConfigPath(), "") << "none is selected";
    EXPECT_EQ(fault([] { EnvConfig::getConfigFilePath("x", false); }), "No configuration loaded !");
    EXPECT_EQ(EnvConfig::getConfigFilePathForConfiguration("B", "Process.xfg", true), studio + "/b/Process.xfg");
    EXPECT_EQ(EnvConfig::getConfigFilePathForConfiguration("B", "nothing", true), "");
}

TEST_F(EnvConfigTest, LaysOneListOverTheMainOne)
{
    const brvTesting::TemporaryFolder local;
    const brvTesting::TemporaryFolder compute;
    configure("a", "");
    configure("b", "");
    declare("A=${STUDIO_PATH}/a\n");
    const std::string localFile = slashes(local.file()) + "/configurations.cfg";
    local.write("configurations.cfg", "A=${STUDIO_PATH}/b\nL=${STUDIO_PATH}/a\n");
    const EnvironmentGuard localGuard("LOCAL_STUDIO_PATH", slashes(local.file()));
    {
        const CapturedOutput captured;
        EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("A", "L"));
        EXPECT_EQ(captured.out(), studio + "/configurations.cfg\n" + localFile + "\nLOCAL_STUDIO_PATH found, Local configuration.cfg file is used: " + localFile + "\n");
    }
    EXPECT_EQ(EnvConfig::getConfigPath("A"), studio + "/b");
    compute.write("configurations.cfg", "C=${STUDIO_PATH}/a\n");
    const EnvironmentGuard computeGuard("COMPUTE_PATH", slashes(compute.file()));
    const CapturedOutput captured;
    EnvConfig::reload();
    EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("A", "C"));
    EXPECT_THAT(captured.out(), HasSubstr("\nCOMPUTE_PATH found, Local configuration.cfg file is used: " + localFile + "\n")) << "the other file, as ever";
    EXPECT_TRUE(EnvConfig::isUsingLocalConfig() && EnvConfig::isUsingComputeConfig());
}

TEST_F(EnvConfigTest, NamesTheListOfTheUserAlsoWhereItIsNotRead)
{
    const brvTesting::TemporaryFolder local;
    configure("a", "");
    declare("A=${STUDIO_PATH}\n");
    root.write("compute/configurations.cfg", "C=${STUDIO_PATH}/a\n");
    const std::string localFile = slashes(local.write("configurations.cfg", "L=${STUDIO_PATH}/a\n"));
    const EnvironmentGuard localGuard("LOCAL_STUDIO_PATH", slashes(local.file()));
    const EnvironmentGuard computeGuard("COMPUTE_PATH", studio + "/compute");
    const CapturedOutput captured;
    EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("A", "C"));
    EXPECT_THAT(captured.out(), testing::EndsWith("COMPUTE_PATH found, Local configuration.cfg file is used: " + localFile + "\n"));
    EXPECT_EQ(EnvConfig::getConfigPath("A"), studio);
}

TEST_F(EnvConfigTest, SelectsByNameAndExportsVariables)
{
    configure("a", "KEY=one\n");
    configure("b", "KEY=two\n");
    root.write("a/envvar.cfg", "BRV_TEST_ROOT = ${STUDIO_PATH}/x\nBRV_TEST_DEEP=${BRV_TEST_ROOT}/y\n");
    declare("A=${STUDIO_PATH}/a\nB=${STUDIO_PATH}/b\nEmpty=${STUDIO_PATH}\n");
    const EnvironmentGuard variable("BRV_TEST_ROOT");
    const EnvironmentGuard deep("BRV_TEST_DEEP");
    const std::string dashes = "---------------------------------------------\n";
    const std::string exported = dashes + "Using \"envvar.cfg\" with following variables\nBRV_TEST_ROOT=" + studio + "/x\nBRV_TEST_DEEP=" + studio + "/x/y\n" + dashes;
    {
        const CapturedOutput captured;
        EXPECT_TRUE(EnvConfig::setConfig("A", false));
        EXPECT_THAT(captured.out(), HasSubstr(exported));
        EXPECT_TRUE(EnvConfig::setConfig("A", false));
        EXPECT_EQ(captured.out().find(exported), captured.out().rfind(exported)) << "nothing happens to what is selected";
        EXPECT_TRUE(EnvConfig::setConfig("A", true));
        EXPECT_NE(captured.out().find(exported), captured.out().rfind(exported));
    }
    EXPECT_NE(std::getenv("BRV_TEST_DEEP"), nullptr);
    const std::string& before = EnvConfig::getCurrentConfiguration();
    EXPECT_EQ(EnvConfig::getFirstPath("KEY"), "one");
    EXPECT_EQ(fault([] { EnvConfig::setConfig("nobody", false); }), "Invalid configuration: nobody");
    EXPECT_EQ(fault([] { EnvConfig::setConfig("Empty", false); }), "Invalid configuration: Empty");
    EnvConfig unknown("nobody");
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "A");
    EXPECT_EQ(EnvConfig("B")["KEY"], "two");
    EXPECT_EQ(before, "A") << "a name that was given stays";
    EXPECT_EQ(EnvConfig::getConfigFilePath("datafile.cfg", true), studio + "/b/datafile.cfg");
    EXPECT_EQ(EnvConfig::getConfigFilePath("envvar.cfg", true), "");
    EXPECT_THAT(EnvConfig::getSeparatedPathForConfiguration("A", "KEY"), ElementsAre("one"));
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "B");

    const CapturedOutput captured;
    EXPECT_EQ(EnvConfig()["NO/SUCH"], "");
    EXPECT_EQ(captured.err(), "Fatal error : Empty keyword= NO/SUCH\n");
    EnvConfig().createFakeConfiguration("Fake", studio + "/a");
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "Fake");
    EXPECT_EQ(EnvConfig::getCurrentConfigurationVersion(), "1.6");
}

TEST_F(EnvConfigTest, SelectsByDefaultTheSuitesOwnThenItsVersionThenAny)
{
    configure("default", "");
    configure("alpha", "");
    configure("old", "", "1.0");
    declare("Alpha=${STUDIO_PATH}/alpha\nAAA=${STUDIO_PATH}/old\nDEFAULT_1.6 b=${STUDIO_PATH}/default\n");
    const auto defaultNow = [] {
        EnvConfig::setConfig("", false);
        return EnvConfig::getCurrentConfiguration();
    };
    EXPECT_EQ(defaultNow(), "DEFAULT_1.6 b");
    std::filesystem::remove(root.path() / "default" / "Process.xfg");
    EXPECT_EQ(fault([] { EnvConfig::setConfig("DEFAULT_1.6 b", true); }), "Invalid configuration: DEFAULT_1.6 b");
    EnvConfig::setConfig("AAA", false);
    EXPECT_EQ(defaultNow(), "Alpha");
    std::filesystem::remove_all(root.path() / "alpha");
    EnvConfig::setConfig("AAA", false);
    EXPECT_EQ(defaultNow(), "AAA") << "its folder has gone since the list was read";
    std::filesystem::remove(root.path() / "old" / "datafile.cfg");
    EXPECT_EQ(fault([] { EnvConfig::setConfig("", true); }), "Unable to find a valid configuration in configurations.cfg !");
}

TEST_F(EnvConfigTest, DatesConfigurations)
{
    const auto version = [&](const std::string& file, const std::string& text) {
        EnvConfig::Version found(7, 7);
        std::filesystem::remove(root.path() / "c" / "version.cfg");
        root.write("c/" + file, text);
        EnvConfig::getConfigVersion(studio + "/c", found);
        return found.toString();
    };
    EXPECT_EQ(version("version.cfg", "\n\r\n2.13 and more\n3.0"), "2.13");
    EXPECT_EQ(version("version.cfg", "# 1.6\n1.6\n"), "?") << "comments are read as numbers, as ever";
    EXPECT_EQ(version("version.cfg", ""), "?");
    EXPECT_EQ(version("Process.cfg", "x\nrun ${STUDIO_PATH}/Studio_1.0/bin\n${STUDIO_PATH}/Studio_dev"), "1.0");
    EXPECT_EQ(version("Process.cfg", "${STUDIO_PATH}\\\\Velorastudio_1.1"), "1.1");
    EXPECT_EQ(version("Process.cfg", "${STUDIO_PATH}Studio_dev\r\n"), "1.6");
    EXPECT_EQ(version("Process.cfg", "${STUDIO_PATH}/Studio_1_0"), "?");
    EnvConfig::Version none;
    EXPECT_FALSE(EnvConfig::getConfigVersion(studio + "/nowhere", none));
    EXPECT_EQ(none, EnvConfig::Version(-1, -1));
    EXPECT_NE(none, EnvConfig::Version(-1, 0));
}

BRV_CHILD(configurationList)
{
    try {
        EnvConfig::getConfigurationsList();
    } catch (const ConfigurationError& error) {
        brvTesting::childSay(std::string("thrown ") + error.what());
    }
    return 0;
}

TEST_F(EnvConfigTest, TellsWhyThereIsNoList)
{
    {
        const EnvironmentGuard nothing("STUDIO_PATH");
        brvTesting::Child child("configurationList");
        for (const char* line : {"========================================", "No STUDIO_PATH environment variable !", "Press ENTER to stop the MODULE"}) {
            child.expectLine(line);
        }
        child.closeInput();
        child.expectLine("thrown No STUDIO_PATH environment variable !");
        child.expectExit(0);
    }
    {
        const CapturedOutput captured;
        EXPECT_EQ(fault(EnvConfig::getConfigurationsList), "No configurations.cfg file !");
        EXPECT_EQ(captured.out(), rule + "No configurations.cfg file\nCheck for STUDIO_PATH validity, and the [" + studio + "/configurations.cfg] file\n" + rule);
    }
    for (const std::string& list : {std::string(), std::string("[Other]\nA=.\n"), std::string("\0\xFF\x01==[[\n]\r\r", 11)}) {
        declare(list);
        const CapturedOutput captured;
        EXPECT_EQ(fault(EnvConfig::getConfigurationsList), "No configuration in configurations.cfg !");
        EXPECT_EQ(captured.out(),
            studio + "/configurations.cfg\n" + rule + "No configuration declared in the common part in configurations.cfg.\n\n" + rule);
    }
}

TEST_F(EnvConfigTest, AddsToOneListFileAndRemovesFromTheMainOneToo)
{
    configure("a", "");
    configure("b", "");
    declare("# ours\nA=${STUDIO_PATH}/a\nB=${STUDIO_PATH}/b\n");
    EnvConfig::getConfigurationsList();
    EnvConfig::addConfig("N", "${STUDIO_PATH}/b");
    EXPECT_THAT(root.read("configurations.cfg"), testing::MatchesRegex("# ours\nA=.*/a\nB=.*/b\nN ?= ?.*STUDIO_PATH./b\n"));

    const brvTesting::TemporaryFolder local;
    const EnvironmentGuard localGuard("LOCAL_STUDIO_PATH", slashes(local.file()));
    EnvConfig::createLocalConfigurationSpace();
    EnvConfig::createLocalConfigurationSpace();
    EXPECT_TRUE(std::filesystem::is_directory(local.path() / "Velorastudio_1.6" / "config"));
    EXPECT_TRUE(std::filesystem::is_directory(local.path() / "Velorastudio_1.6" / "data"));
    EnvConfig::addConfig("A2", "${STUDIO_PATH}/a");
    EXPECT_THAT(local.read("configurations.cfg"), HasSubstr("${STUDIO_PATH}/a"));
    EXPECT_THAT(root.read("configurations.cfg"), testing::Not(HasSubstr("A2")));

    EnvConfig::deleteConfig("A", "");
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "A") << "selected just before it goes, as ever";
    EXPECT_EQ(EnvConfig::getCurrentConfigurationVersion(), "");
    EXPECT_THAT(root.read("configurations.cfg"), testing::Not(HasSubstr("A=")));
    EnvConfig::deleteConfig("A2", "B");
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "B");
    EXPECT_THAT(local.read("configurations.cfg"), testing::Not(HasSubstr("A2")));
    EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("B", "N"));

    const EnvironmentGuard nowhere("LOCAL_STUDIO_PATH", studio + "/no/such/folder");
    const CapturedOutput captured;
    const std::string text = "Cannot create empty local configurations.cfg file.\nCheck for LOCAL_STUDIO_PATH validity.";
    EXPECT_EQ(fault(EnvConfig::createLocalConfigurationSpace), text);
    EXPECT_EQ(captured.out(), text);
}

TEST_F(EnvConfigTest, TakesAnotherListFile)
{
    configure("a", "");
    declare("A=${STUDIO_PATH}/a\n");
    root.write("more.cfg", "More=${STUDIO_PATH}/a\n");
    EnvConfig::getConfigurationsList();
    EnvConfig::setVeloraConfigFilePath("${STUDIO_PATH}/more.cfg");
    EXPECT_EQ(EnvConfig::getConfigurationsFilePath(), studio + "/more.cfg");
    EXPECT_THAT(EnvConfig::getConfigurationsList(), ElementsAre("A", "More"));
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "A");
}

/// Each configuration holds its own name in all that is read: a mixture of two would be seen.
TEST_F(EnvConfigTest, IsReadByManyThreadsWhileOneSelects)
{
    for (const std::string name : {"left", "right"}) {
        configure(name, "NAME=" + name + "\nPATH=${BRV_TEST_NAME}/" + name + "\nFOLDER=${STUDIO_PATH}/left\n");
        root.write(name + "/envvar.cfg", "BRV_TEST_NAME=" + name + "\n");
    }
    declare("left=${STUDIO_PATH}/left\nright=${STUDIO_PATH}/right\n");
    const EnvironmentGuard variable("BRV_TEST_NAME");
    const CapturedOutput captured;
    EnvConfig::setConfig("left", false);
    constexpr int readerCount = 16;
    constexpr int turns = 30;
    std::atomic<int> torn{0};
    std::atomic<int> finished{0};
    const auto isOne = [](const std::string& text) { return text == "left" || text == "right"; };
    const auto readOnce = [&] {
        const std::string path = EnvConfig::getFirstPath("PATH/x");
        std::string expanded;
        // By way of another library, too: there is one environment.
        Utilities::System::ExpandLocalEnvironmentVariables("${BRV_TEST_NAME}", expanded, Utilities::System::DaemonVariableMatchingPattern, {});
        return isOne(EnvConfig::getCurrentConfiguration()) && isOne(EnvConfig::getFirstPath("NAME")) && isOne(expanded)
            && isOne(resolveGenericPath("${BRV_TEST_NAME}")) && (path == "left/left/x" || path == "right/right/x")
            && EnvConfig::findInPath("FOLDER", "Process.xfg") == studio + "/left/Process.xfg" && EnvConfig::getSeparatedPath("NAME").size() == 1
            && !EnvConfig::getConfigFilePath("datafile.cfg", true).empty() && getBasePath() != nullptr;
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < readerCount; ++i) {
        readers.emplace_back([&] {
            for (int turn = 0; turn < turns; ++turn) {
                torn += readOnce() ? 0 : 1;
            }
            ++finished;
        });
    }
    for (int i = 0; finished < readerCount; ++i) {
        EnvConfig::setConfig(i % 2 == 0 ? "right" : "left", false);
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(torn, 0);
}

} // namespace
} // namespace brvUtils
