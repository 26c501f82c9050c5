// The recorder and the program that tells of recordings, as a user runs them.
#include "Heartbeat.h"
#include "Modules_test.h"
#include "Process.h"
#include "SupervisorRows_test.h"
#include "testing/TemporaryFolder.h"

#include <brvUtils/data/DataMatrixFactory.h>
#include <brvUtils/ipc/EventWin32.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <sstream>
#include <thread>

namespace {

using testing::EndsWith;
using testing::MatchesRegex;

class Recorder : public Modules
{
protected:
    /// Waits until the file has so many whole rows, and the line of names.
    void awaitRows(const std::string& file, std::ptrdiff_t rows)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline);
        std::string text;
        do {
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << file << " does not grow:\n" << text;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            text = std::filesystem::exists(folder_.path() / file) ? folder_.read(file) : "";
        } while (std::count(text.begin(), text.end(), '\n') <= rows);
    }

    std::unique_ptr<DataMatrix> load(const std::string& file)
    {
        std::unique_ptr<DataMatrix> table(DataMatrixFactory::create(file, ',', CsvDataFile::FORCE_DOUBLE));
        EXPECT_TRUE(table->load(folder_.file(file), {}));
        return table;
    }

    /// All that a program says that ends by itself.
    std::string said(const std::string& program, const Arguments& arguments, const ChildExit& end)
    {
        ChildProcess process = start(program, arguments);
        EXPECT_EQ(process.wait(deadline), end) << process.errorOutput();
        std::string text;
        while (const auto line = process.readLine(deadline)) {
            text += *line + "\n";
        }
        return text + process.errorOutput();
    }

    brvTesting::TemporaryFolder folder_{"brv täst"};
};

} // namespace

BRV_CHILD(asksToEnd)
{
    brvUtils::EventWin32 stop(suite::ModuleLinks::stopEvent(arguments[0]).c_str(), true, false);
    brvTesting::childSay(stop.set() ? "asked" : "failed");
    brvTesting::childHear(); // the event is there as long as somebody has it
    return 0;
}

TEST_F(Recorder, goesOnInTheFileOfAKilledOneAndWritesAllWhenItIsStopped)
{
    const Arguments arguments = {"-file", "${RUN_FOLDER}/new/run.csv", "-wait", "100", "-silence", "100"};
    const Variables variables = {{"RUN_FOLDER", folder_.file()}};
    ChildProcess vehicle = start("vehicle", {"-seconds", "0"});
    ChildProcess killed = start("recorder", arguments, variables);
    EXPECT_THAT(lineWith(killed, "recorder: writes "), EndsWith("/new/run.csv"));
    awaitRows("new/run.csv", 30);
    killed.kill();
    killed.wait(deadline);

    const std::string before = folder_.read("new/run.csv");
    ASSERT_THAT(before, EndsWith("\n"));
    const auto first = load("new/run.csv");
    const std::size_t rows = first->getRowsCount();
    EXPECT_EQ(rows, static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) - 1);
    for (std::size_t column = 0; column < first->getColmnCount(); ++column) {
        EXPECT_EQ((*first)[column]->size(), rows) << first->getDataName(column);
    }
    double last = 0.0;
    ASSERT_TRUE(first->getData(0, rows - 1, last));

    folder_.write("new/run.csv", before + "123,4.5"); // as if the power had failed
    ChildProcess recorder = start("recorder", arguments, variables);
    EXPECT_THAT(lineWith(recorder, "recorder: goes on in "), EndsWith("run.csv behind row " + std::to_string(static_cast<int>(last))));
    EXPECT_EQ(lineWith(recorder, "removed"), "recorder: removed 7 bytes of a row that was cut");
    awaitRows("new/run.csv", static_cast<std::ptrdiff_t>(rows) + 10);
    brvTesting::Child stopper("asksToEnd", {"recorder"}, {{"STUDIO_INSTANCE", instance_}});
    stopper.awaitLine("asked");
    std::istringstream end(lineWith(recorder, "recorder: stopped, "));
    EXPECT_EQ(recorder.wait(deadline), success) << recorder.errorOutput();

    std::string word;
    std::size_t added = 0;
    end >> word >> word >> added;
    const std::string text = folder_.read("new/run.csv");
    EXPECT_EQ(text.substr(0, before.size()), before);
    const auto both = load("new/run.csv");
    ASSERT_EQ(both->getRowsCount(), rows + added);
    const double* const number = (*both)["row"]->getDoubleData();
    const double* const time = (*both)["time s"]->getDoubleData();
    const double* const clock = (*both)["clock s"]->getDoubleData();
    const double* const speed = (*both)["speed m/s"]->getDoubleData();
    for (std::size_t row = 1; row < rows + added; ++row) {
        EXPECT_GT(number[row], number[row - 1]);
        EXPECT_GT(time[row], time[row - 1]);
        EXPECT_NEAR(time[row], clock[row] - clock[0], 1e-3);
        EXPECT_GE(speed[row], 0.0);
    }
    EXPECT_GE(number[rows] * 0.02, time[rows] - 1.0) << "beats without a recorder count";
}

TEST_F(Recorder, underASupervisorAllOfARunGoToTheFileThatTheConfigurationNames)
{
    std::filesystem::copy(programFolder() / "suite", folder_.path(), std::filesystem::copy_options::recursive);
    ChildProcess supervisor = start("supervisor", {"-modules", "recorder, vehicle -seconds 0", "-grace", "0", "-pause", "0"}, {{"STUDIO_PATH", folder_.file()}});
    const std::string place = lineWith(supervisor, "recorder: writes ");
    const std::string name = place.substr(place.rfind('/') + 1);
    EXPECT_THAT(name, MatchesRegex(".*run-.*\\.csv")); // with the instance's name in front
    EXPECT_THAT(place, EndsWith("/data/recordings/" + name));
    awaitRows("data/recordings/" + name, 3);
    std::optional<SupervisorRow> row;
    do {
        row = supervisorRow(lineWith(supervisor, " alive "));
    } while (row && !row->shows("recorder", "alive"));
    ASSERT_TRUE(row && suite::killProcess(row->process));
    EXPECT_THAT(lineWith(supervisor, "recorder: goes on in "), HasSubstr("/data/recordings/" + name + " behind row "));
    supervisor.kill();
    while (supervisor.readLine(deadline)) {
    }
    EXPECT_FALSE(supervisor.outputOpen()) << "a process is left behind";
}

TEST_F(Recorder, mistakesAreExplained)
{
    EXPECT_THAT(said("recorder", {"-silence", "0"}, failure), HasSubstr("recorder: -silence is 0.1 to 100000, not 0"));
    EXPECT_THAT(said("recorder", {"-wait", "0", "-file", folder_.file("x.csv")}, failure), HasSubstr("recorder: no vehicle came"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "x.csv"));
    ChildProcess vehicle = start("vehicle", {"-seconds", "0"});
    EXPECT_THAT(said("recorder", {"-wait", "100", "-file", folder_.file()}, failure), HasSubstr(" cannot be opened: "));
    EXPECT_THAT(said("recorder", {"-wait", "100", "-file", folder_.write("letter.txt", "Dear all")}, failure), HasSubstr("is no recording with these columns"));
}

TEST_F(Recorder, summaryTellsOfRecordingsOfAllKinds)
{
    const std::string file = folder_.write("a.csv", "row;time s;note\n4;0.08;left\n5;0.1;\n8;0.2;right\n9;x;nan\n");
    const std::string text = said("summary", {"-separator", ";", file}, success);
    EXPECT_THAT(text, HasSubstr("a.csv: 4 rows, 3 columns, 0.1 s, missing rows: 2\n"));
    EXPECT_THAT(text, testing::ContainsRegex("\nsummary:   row +4 +4 +6.5 +9\n"));
    EXPECT_THAT(text, testing::ContainsRegex("\nsummary:   time s +3 +0.08 +0.1266667 +0.2\n"));
    EXPECT_THAT(text, testing::ContainsRegex("\nsummary:   note +3 +text\n"));

    const std::string idc = (programFolder() / "suite/data/recordings/overtaking.idc").u8string();
    EXPECT_THAT(said("summary", {idc, folder_.write("empty.csv", "")}, success),
        testing::AllOf(HasSubstr("overtaking.idc: 301 rows, 87 columns, 30.0 s\n"), HasSubstr("empty.csv: 0 rows, 0 columns\n")));

    EXPECT_THAT(said("summary", {}, failure), HasSubstr("summary: takes the recordings to tell of"));
    EXPECT_THAT(said("summary", {"none.csv", "notes.txt"}, failure),
        testing::AllOf(HasSubstr("summary: none.csv cannot be opened"), HasSubstr("summary: notes.txt is none of .csv, .mat and .idc")));
}
