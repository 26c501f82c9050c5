#include "brvUtils/startup/ConfigurationReport.h"

#include "brvUtils/startup/EnvConfig_test.h"

namespace brvUtils {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class ConfigurationReportTest : public EnvConfigTest
{
protected:
    brvTesting::EnvironmentGuard data{"REPORT_DATA"}, reportRoot{"REPORT_ROOT"}, nowhere{"REPORT_NOWHERE"};
};

} // namespace

TEST_F(ConfigurationReportTest, looksAtListsWithoutSelectingOrPrinting)
{
    brvTesting::TemporaryFolder other;
    const brvTesting::EnvironmentGuard mainRoot("STUDIO_PATH", root.file()), user("LOCAL_STUDIO_PATH", other.file());
    configure("one", "");
    configure("two", "");
    declare("[Common]\nA = ${STUDIO_PATH}/one\nB = ${STUDIO_PATH}/missing\nC = ${REPORT_NOWHERE}/c\n[" + host() + "]\nA = ${STUDIO_PATH}/two\n");
    other.write("configurations.cfg", "[Common]\nB = ${STUDIO_PATH}/two/\n");
    const brvTesting::CapturedOutput captured;
    const ListReport report = reportConfigurations();
    EXPECT_EQ(captured.out() + captured.err(), "");
    EXPECT_EQ(report.computer, host());
    ASSERT_EQ(report.files.size(), 2u);
    EXPECT_EQ(report.files[0].variable, "STUDIO_PATH");
    EXPECT_TRUE(report.files[0].isRead && report.files[1].isRead);
    EXPECT_EQ(report.files[1].variable, "LOCAL_STUDIO_PATH");
    std::vector<std::string> seen;
    for (const EntryReport& each : report.declarations) {
        seen.push_back((each.section == "Common" ? "" : "host ") + each.name + (each.counts ? " counts " : " not ") + each.paths[0].fault);
    }
    EXPECT_THAT(seen, ElementsAre("A not ", "B not ", "C not there is no variable REPORT_NOWHERE", "host A counts ", "B counts "));
    EXPECT_EQ(slashes(report.declarations[4].paths[0].path), slashes(root.file()) + "/two");
    EXPECT_EQ(EnvConfig::getCurrentConfiguration(), "");
}

TEST_F(ConfigurationReportTest, knowsWhichListsWouldBeThere)
{
    {
        const brvTesting::EnvironmentGuard mainRoot("STUDIO_PATH");
        EXPECT_THAT(reportConfigurations().files, IsEmpty()) << "nobody is asked to press a key";
    }
    const brvTesting::EnvironmentGuard mainRoot("STUDIO_PATH", root.file()), node("COMPUTE_PATH", root.file("node"));
    const ListReport report = reportConfigurations(root.file("list.cfg"));
    ASSERT_EQ(report.files.size(), 2u);
    EXPECT_EQ(report.files[0].file, root.file("list.cfg"));
    EXPECT_FALSE(report.files[0].exists || report.files[1].exists || report.files[1].isRead);
    EXPECT_EQ(report.files[1].file, root.file("node") + "/configurations.cfg");
}

TEST_F(ConfigurationReportTest, resolvesAConfigurationAsIfItWereSelected)
{
    const brvTesting::EnvironmentGuard mainRoot("STUDIO_PATH", root.file());
    configure("one", "[Common]\ncars = ${REPORT_DATA}/cars;/nowhere/to/be/found\nroads = ${REPORT_NOWHERE}\n[" + host() + "]\nroads = ${STUDIO_PATH}\n", "2.5");
    root.write("one/envvar.cfg", "[Common]\nREPORT_DATA = ${REPORT_ROOT}/data\nREPORT_ROOT = ${STUDIO_PATH}\n");
    root.write("data/cars/car.txt", "");
    const ConfigurationReport early = reportConfiguration(root.file("one"));
    ASSERT_EQ(early.variables.size(), 2u);
    EXPECT_EQ(early.variables[0].paths[0].fault, "there is no variable REPORT_ROOT") << "it comes behind";

    root.write("one/envvar.cfg", "[Common]\nREPORT_ROOT = ${STUDIO_PATH}\nREPORT_DATA = ${REPORT_ROOT}/data\n");
    const ConfigurationReport report = reportConfiguration(root.file("one"));
    EXPECT_EQ(report.variables[1].paths[0].fault, "");
    EXPECT_EQ(report.version, EnvConfig::Version(2, 5));
    EXPECT_EQ(slashes(report.versionFile), slashes(root.file("one/version.cfg")));
    EXPECT_TRUE(report.hasProcessFile && report.hasDataFile);
    ASSERT_EQ(report.keywords.size(), 3u);
    ASSERT_EQ(report.keywords[0].paths.size(), 2u);
    EXPECT_TRUE(report.keywords[0].paths[0].exists);
    EXPECT_FALSE(report.keywords[0].paths[1].exists);
    EXPECT_FALSE(report.keywords[1].counts) << "the computer's own counts";
    EXPECT_TRUE(report.keywords[2].counts);
    EXPECT_EQ(std::getenv("REPORT_DATA"), nullptr) << "nothing is exported";

    const ConfigurationReport nothing = reportConfiguration(root.file("none"));
    EXPECT_FALSE(nothing.hasProcessFile || nothing.hasDataFile);
    EXPECT_EQ(nothing.versionFile, "");
}

TEST_F(ConfigurationReportTest, tellsOfAKeywordWhatExplainTells)
{
    EXPECT_EQ(reportKeyword("data").configuration, "");
    const brvTesting::EnvironmentGuard mainRoot("STUDIO_PATH", root.file());
    configure("one", "[Common]\ndata = ;${STUDIO_PATH}\nda = ${STUDIO_PATH}/one\n");
    declare("[Common]\nA = ${STUDIO_PATH}/one\n");
    const brvTesting::CapturedOutput captured;
    EnvConfig::setConfig("A", false);
    const KeywordReport report = reportKeyword("data/one");
    EXPECT_EQ(report.configuration + report.section + report.entry + report.rest, "ACommondata/one");
    ASSERT_EQ(report.folders.size(), 2u);
    EXPECT_EQ(report.folders[0].generic, "/one");
    EXPECT_TRUE(report.folders[1].exists);
    EXPECT_THAT(report.folders[1].variables, ElementsAre(Pair("STUDIO_PATH", root.file())));
    EXPECT_EQ(report.first, "");
    EXPECT_EQ(reportKeyword("roads").section, "");
}

} // namespace brvUtils
