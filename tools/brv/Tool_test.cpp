// The program as a user and as other programs run it.
#include "testing/Program.h"
#include "testing/TemporaryFolder.h"
#include "testing/ThisProgram.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

using brvTesting::Arguments;
using Json = nlohmann::ordered_json;
using Result = brvTesting::ProgramResult;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class Tool : public testing::Test
{
protected:
    Tool()
    {
        folder_.write("configurations.cfg", "[Common]\nDEFAULT_1.6_A = ${STUDIO_PATH}/a\nB = ${STUDIO_PATH}/b\nGone = ${STUDIO_PATH}/gone\n");
        configure("a", "cars = ${TOOL_DATA}/cars\n");
        configure("b", "cars = ${STUDIO_PATH}\n");
        folder_.write("a/envvar.cfg", "[Common]\nTOOL_DATA = ${STUDIO_PATH}/data\n");
        folder_.write("data/cars/small/car.txt", "");
        folder_.write("drive.csv", "time [s];speed;name\n0;1.5;a\n1;4;b\n2;x;c\n3;16;d\n");
    }

    void configure(const std::string& name, const std::string& keywords) const
    {
        folder_.write(name + "/Process.xfg", "");
        folder_.write(name + "/version.cfg", "1.6\n");
        folder_.write(name + "/datafile.cfg", "[Common]\n" + keywords);
    }

    Result run(const Arguments& arguments)
    {
        return brvTesting::runProgram(brvTesting::commandOf("brv", arguments, {{"STUDIO_PATH", studio_}, {"STUDIO_DUMP_DIR", folder_.file("dumps")}}));
    }

    /// What programs get: one document and nothing else.
    Json document(Arguments arguments, int code = 0)
    {
        arguments.push_back("--json");
        const Result result = run(arguments);
        EXPECT_EQ(result.code, code) << result.out << result.err;
        EXPECT_TRUE(Json::accept(result.out)) << result.out;
        return Json::parse(result.out, nullptr, false);
    }

    /// All values of a key, in order.
    static std::vector<std::string> each(const Json& rows, const std::string& key)
    {
        std::vector<std::string> values;
        for (const Json& row : rows) {
            values.push_back(row[key].is_string() ? row[key].get<std::string>() : row[key].dump());
        }
        return values;
    }

    static std::string slashes(std::string path)
    {
        std::replace(path.begin(), path.end(), '\\', '/');
        return path;
    }

    brvTesting::TemporaryFolder folder_{"a suite"};
    std::string studio_ = slashes(folder_.file());
};

} // namespace

TEST_F(Tool, saysByItsExitCodeAndInADocumentWhatIsWrong)
{
    EXPECT_EQ(run({"--help"}).code, 0);
    EXPECT_THAT(run({"config", "explain", "--help"}).out, HasSubstr("brv config explain data/cycles"));
    EXPECT_EQ(document({"--version"})["version"], "1.6");
    for (const Arguments& wrong : {Arguments{}, {"nonsense"}, {"config"}, {"data", "head"}, {"config", "list", "--nonsense"}, {"--completion", "ash"}}) {
        EXPECT_THAT(document(wrong, 2)["error"], Not(IsEmpty()));
    }
    EXPECT_THAT(run({}).err, HasSubstr("config")) << "who knows no command sees which there are";
    const Result missing = run({"data", "info", folder_.file("none.csv")});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_THAT(missing.err, AllOf(StartsWith("brv: "), HasSubstr("none.csv")));
}

TEST_F(Tool, showsConfigurationsAndWhereTheirValuesComeFrom)
{
    const Json list = document({"config", "list"});
    EXPECT_THAT(each(list["configurations"], "name"), ElementsAre("DEFAULT_1.6_A", "B", "Gone"));
    EXPECT_THAT(each(list["configurations"], "state"), ElementsAre("default", "ok", "the folder does not exist"));
    EXPECT_EQ(list["lists"][0]["variable"], "STUDIO_PATH");
    const Json shown = document({"config", "show"});
    EXPECT_EQ(shown["variables"][0]["value"], studio_ + "/data");
    EXPECT_EQ(shown["keywords"][0]["path"], studio_ + "/data/cars");
    const Json explained = document({"config", "explain", "cars/small"});
    EXPECT_EQ(explained["first"], studio_ + "/data/cars/small");
    EXPECT_EQ(explained["folders"][0]["variables"]["TOOL_DATA"], studio_ + "/data");
    EXPECT_EQ(document({"config", "explain", "cars", "-c", "B"})["first"], studio_ + "/");
    document({"config", "explain", "roads"}, 1);
    document({"config", "show", "C"}, 1);
    const Result table = run({"config", "list"});
    EXPECT_THAT(table.out, AllOf(StartsWith("NAME"), Not(HasSubstr("\x1b")), Not(HasSubstr("envvar")))) << "what the library prints is not in it";
    EXPECT_EQ(table.err, "");
    EXPECT_THAT(run({"config", "explain", "cars", "--verbose"}).err, HasSubstr("envvar.cfg"));
}

TEST_F(Tool, needsNoKeyToBePressedWithoutAList)
{
    studio_.clear();
    EXPECT_NE(run({"config", "list"}).code, 0);
    EXPECT_EQ(document({"config", "list", "--list", folder_.file("none.cfg")}, 1).count("error"), 1u);
}

TEST_F(Tool, findsWhatIsWrongWithConfigurations)
{
    const Json first = document({"config", "doctor"}, 1);
    EXPECT_THAT(each(first["findings"], "state"), ElementsAre("ok", "ok", "ok", "problem"));
    EXPECT_EQ(first["findings"][3]["subject"], "Gone");
    EXPECT_THAT(first["findings"][3]["remedy"].get<std::string>(), StartsWith("mkdir "));
    EXPECT_THAT(first["findings"][3]["where"].get<std::string>(), HasSubstr("configurations.cfg:4"));
    EXPECT_EQ(document({"config", "doctor", "-c", "B"})["problems"], 0);

    std::filesystem::remove(folder_.path() / "a" / "Process.xfg");
    folder_.write("a/version.cfg", "# 1.6\n");
    folder_.write("a/envvar.cfg", "[Common]\nTOOL_DATA = ${TOOL_NOWHERE}\n");
    folder_.write("a/datafile.cfg", "[Common]\ncars = ${STUDIO_PATH};${STUDIO_PATH}/none\nroads/old = ${STUDIO_PATH}\nnonsense\ncars = ${STUDIO_PATH}/none\n");
    folder_.write("a/shm.cfg", "[Car_1]\nType = vmic\n[Road]\nType = VMIC\nBaseAddress = 10g\nInterrupt = 5\n[Lane]\nType = VMIC\n");
    const Json second = document({"config", "doctor", "-c", "DEFAULT_1.6_A"}, 1);
    const std::string texts = second.dump();
    for (const char* const expected : {"Process.xfg is missing", "its version is not known", "there is no variable TOOL_NOWHERE", "/none, which does not exist", "roads/old has a separator",
             "cars stands in [Common] again", "\\\"nonsense\\\" is ignored", "Type = vmic means memory", "10g is no hexadecimal", "Interrupt 5 is no number", "there is no BaseAddress"}) {
        EXPECT_THAT(texts, HasSubstr(expected));
    }
    EXPECT_THAT(run({"config", "doctor"}).out, HasSubstr("-> "));
}

TEST_F(Tool, looksIntoRecordedData)
{
    const std::string file = folder_.file("drive.csv");
    const Json info = document({"data", "info", file});
    EXPECT_EQ(info["rows"], 4);
    EXPECT_THAT(each(info["columns"], "name"), ElementsAre("time [s]", "speed", "name"));
    EXPECT_THAT(each(info["columns"], "type"), ElementsAre("number", "number", "text"));
    EXPECT_THAT(each(info["columns"], "unit"), ElementsAre("s", "null", "null"));
    EXPECT_EQ(info["columns"][0]["mean"], 1.5);
    EXPECT_EQ(info["columns"][1]["max"], 16.0);
    const Json head = document({"data", "head", file, "--rows", "2", "--columns", "name,1"});
    EXPECT_THAT(each(head["rows"], "name"), ElementsAre("a", "b"));
    const Json plot = document({"data", "plot", file, "time [s]"});
    EXPECT_EQ(plot["series"][0]["points"].size(), 4u);
    EXPECT_THAT(run({"data", "plot", file, "speed", "--over", "1"}).out, AllOf(HasSubstr("* speed"), HasSubstr("16|")));
    for (const Arguments& wrong : {Arguments{"data", "plot", file, "name"}, {"data", "plot", file, "speeds"}, {"data", "plot", file, "1", "--output", "x.bmp"}, {"data", "info", folder_.file("a/Process.xfg")}}) {
        EXPECT_THAT(document(wrong, 1)["error"], Not(IsEmpty()));
    }
    folder_.write("odd/.csv", "a,\x1b[2J\n1,2\n");
    EXPECT_EQ(document({"data", "info", folder_.file("odd/.csv")})["kind"], "csv");
    EXPECT_THAT(run({"data", "head", folder_.file("odd/.csv")}).out + run({"data", "plot", folder_.file("odd/.csv"), "2", "--over", "2"}).out, Not(HasSubstr("\x1b")));
    document({"data", "head", file, "--rows", "-1"}, 2);
    document({"data", "head", file, "--separator", "semicolon"}, 2);
    const Result drawn = run({"data", "plot", file, "speed", "--output", folder_.file("x.svg")});
    EXPECT_TRUE(drawn.code == 0 ? folder_.read("x.svg").find("<svg") != std::string::npos : drawn.err.find("gnuplot") != std::string::npos) << drawn.err;
}

TEST_F(Tool, showsVersionInformation)
{
    const Json version = document({"version", brvTesting::thisProgram(), folder_.file("drive.csv")}, 1);
    EXPECT_EQ(version["files"].size(), 2u);
    EXPECT_EQ(document({"version", brvTesting::programBeside("brv")})["files"][0]["InternalName"], "brv_program");
    EXPECT_THAT(version["files"][1]["error"].get<std::string>(), HasSubstr("drive.csv"));
}

TEST_F(Tool, examinesTheComputer)
{
    const Result result = run({"doctor", "--json"});
    ASSERT_LE(result.code, 1) << result.err;
    const Json report = Json::parse(result.out);
    EXPECT_THAT(each(report["findings"], "subject"), AllOf(Contains("shared memory"), Contains("real time"), Contains("timers"), Contains("card driver"), Contains("crash dumps")));
    EXPECT_EQ(report["findings"].back()["state"], "ok") << report["findings"].back();
    for (const Json& finding : report["findings"]) {
        EXPECT_TRUE(finding["state"] == "ok" || finding["remedy"].is_string()) << finding;
    }
}

TEST_F(Tool, tellsTheShellWhatCanFollow)
{
    const auto completions = [&](Arguments words) {
        words.insert(words.begin(), {"--complete", "--"});
        return run(words).out;
    };
    EXPECT_THAT(completions({"c"}), "config\n");
    EXPECT_THAT(completions({"config", ""}), "list\nshow\nexplain\ndoctor\n");
    EXPECT_THAT(completions({"config", "show", "D"}), "DEFAULT_1.6_A\n");
    EXPECT_THAT(completions({"config", "explain", "-c", "B"}), "B\n");
    EXPECT_THAT(completions({"config", "explain", ""}), HasSubstr("cars\n"));
    EXPECT_THAT(completions({"config", "list", "--"}), "--help\n--list\n--json\n--verbose\n--completion\n--version\n");
    EXPECT_THAT(completions({"data", "info", ""}), ":files\n");
    EXPECT_THAT(run({"--completion", "bash"}).out, HasSubstr("complete -F _brv brv"));
}
