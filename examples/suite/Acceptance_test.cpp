// The whole suite from its configuration: modules crash, hang and are killed in mid-run, and what the others, the supervisor
// and the recording make of it.
#include "Modules_test.h"
#include "Process.h"
#include "SceneCheck.h"
#include "SupervisorRows_test.h"
#include "testing/TemporaryFolder.h"

#include <brvUtils/data/DataMatrixFactory.h>
#include <brvUtils/ipc/NamedObjects.h>
#include <brvUtils/platform/ProcessWin32.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::EndsWith;

BRV_CHILD(countsObjects)
{
    const std::string instance = arguments[0];
    const auto objects = brvUtils::lookAtNamedObjects(true).objects;
    const auto isOurs = [&](const auto& object) { return object.name.compare(0, instance.size(), instance) == 0; };
    brvTesting::childSay(std::to_string(std::count_if(objects.begin(), objects.end(), isOurs)));
    return 0;
}

namespace {

const std::vector<std::string> moduleNames = {"recorder", "display", "sensor", "traffic", "vehicle"};

/// How the supervisor tells of a process that was killed.
std::string endOfKilled()
{
    const bool bySignal = brvUtils::os::exitAfterKill().kind == ChildExit::Kind::killed;
    return bySignal ? "ended by signal 9" : "ended with code 0, but not by itself";
}

class Acceptance : public Modules
{
protected:
    /// Copies the suite, and sets what its configuration starts: nobody gives up on a busy computer.
    void install(const std::string& vehicle)
    {
        const std::string patient = " -wait 1000 -silence 1000, ";
        const std::string modules = "modules = recorder" + patient + "display" + patient + "sensor" + patient + "traffic" + patient + vehicle;
        fs::copy(programFolder() / "suite", folder_.path() / "suite", fs::copy_options::recursive);
        const std::string file = "suite/config/Urban/Process.xfg";
        std::string settings = folder_.read(file);
        const std::size_t place = settings.find("\nmodules = ") + 1;
        folder_.write(file, settings.replace(place, settings.find('\n', place) - place, modules));
        fs::create_directory(folder_.path() / "dumps");
        before_ = files();
    }

    Variables variables() const
    {
        // Where the system has no such name space the names of the instance keep this run apart.
        return {{"STUDIO_PATH", folder_.file("suite")}, {"STUDIO_DUMP_DIR", folder_.file("dumps")}, {"SUITE_RUN", "run"},
            {"STUDIO_INSTANCE", instance_}, {"STUDIO_IPC_NAMESPACE", folder_.file("objects")}};
    }

    std::vector<std::string> files() const
    {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
            if (!entry.is_directory()) {
                found.push_back(fs::relative(entry.path(), folder_.path()).generic_u8string());
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// Takes in what the supervisor says until it shows the module in that state.
    bool await(const std::string& module, const std::string& state)
    {
        while (!now_[module].shows(module, state)) {
            const auto line = supervisor_.readLine(deadline);
            if (!line) {
                ADD_FAILURE() << module << " is never \"" << state << "\" in\n" << said_ << supervisor_.errorOutput();
                return false;
            }
            take(*line);
        }
        return true;
    }

    void take(const std::string& line)
    {
        said_ += line + "\n";
        if (const auto row = supervisorRow(line)) {
            if (now_[row->module].state != row->state) {
                story_[row->module].push_back(row->state);
            }
            now_[row->module] = *row;
        }
    }

    /// Waits until it is started again after what happened to it. \param note begins what the supervisor says of its death.
    void awaitReturn(const std::string& module, const std::string& note)
    {
        const std::uint32_t process = now_[module].process;
        ASSERT_TRUE(await(module, "dead"));
        EXPECT_EQ(now_[module].process, process);
        EXPECT_THAT(now_[module].note, StartsWith(note)) << module;
        ASSERT_TRUE(await(module, "restart"));
        EXPECT_NE(now_[module].process, process);
        ASSERT_TRUE(await(module, "alive"));
    }

    /// Asks the vehicle to end, and the others end with it.
    void endAll()
    {
        brvTesting::Child asker("asksToEnd", {"vehicle"}, variables());
        asker.awaitLine("asked");
        while (const auto line = supervisor_.readLine(deadline)) {
            take(*line);
        }
        EXPECT_FALSE(supervisor_.outputOpen()) << "a process is left behind\n" << said_;
        EXPECT_EQ(supervisor_.wait(deadline), success) << said_ << supervisor_.errorOutput();
        for (const std::string& module : moduleNames) {
            EXPECT_EQ(now_[module].note, "ended with code 0") << module;
        }
        EXPECT_THAT(said_, EndsWith("supervisor: all modules have ended\n"));
        asker.closeInput();
        asker.expectExit(0);
        EXPECT_EQ(objects(), "0");
    }

    /// How many named objects of this run live.
    std::string objects() const
    {
        brvTesting::Child counter("countsObjects", {instance_}, variables());
        return counter.readLine();
    }

    std::string recording() const
    {
        const std::string name = "suite/data/recordings/run.csv";
        return fs::exists(folder_.path() / name) ? folder_.read(name) : "";
    }

    /// Waits until rows stand in the recording that were not there when this was called. What is there then.
    std::string awaitRows()
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline);
        const std::string before = recording();
        std::string text;
        do {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            text = recording();
            if (std::chrono::steady_clock::now() > limit) {
                ADD_FAILURE() << "the recording does not grow\n" << said_;
                break;
            }
        } while (std::count(text.begin(), text.end(), '\n') <= std::count(before.begin(), before.end(), '\n') + 1);
        return text.substr(0, text.rfind('\n') + 1);
    }

    void checkRecording();

    /// How often a text stands in what was said.
    std::size_t times(const std::string& text) const
    {
        std::size_t count = 0;
        for (std::size_t place = said_.find(text); place != said_.npos; place = said_.find(text, place + 1)) {
            ++count;
        }
        return count;
    }

    brvTesting::TemporaryFolder folder_{"brv täst"};
    std::vector<std::string> before_; ///< The files of the suite.
    ChildProcess supervisor_;
    std::string said_;
    std::map<std::string, SupervisorRow> now_; ///< The last row of each module.
    std::map<std::string, std::vector<std::string>> story_; ///< Its states, one after the other.

private:
    brvTesting::EnvironmentGuard disable_{"STUDIO_DISABLE_DUMP"}, level_{"STUDIO_PROCESS_DUMP_LEVEL"};
};

void Acceptance::checkRecording()
{
    ASSERT_THAT(recording(), EndsWith("\n"));
    std::unique_ptr<DataMatrix> table(DataMatrixFactory::create("run.csv", ',', CsvDataFile::FORCE_DOUBLE));
    ASSERT_TRUE(table->load(folder_.file("suite/data/recordings/run.csv"), {}));
    const std::size_t rows = table->getRowsCount();
    for (std::size_t column = 0; column < table->getColmnCount(); ++column) {
        ASSERT_EQ((*table)[column]->size(), rows) << table->getDataName(column);
    }
    const double* const number = (*table)["row"]->getDoubleData();
    const double* const time = (*table)["time s"]->getDoubleData();
    const double* const frame = (*table)["frame"]->getDoubleData();
    const double* const driven = (*table)["vehicle time s"]->getDoubleData();
    const double* const distance = (*table)["distance m"]->getDoubleData();
    int vehicles = 1;
    for (std::size_t row = 0; row < rows; ++row) {
        EXPECT_NEAR(driven[row], frame[row] * 0.005, 1e-6) << "each vehicle begins at 0, row " << row;
        if (row > 0) {
            EXPECT_GT(number[row], number[row - 1]);
            EXPECT_GT(time[row], time[row - 1]);
            vehicles += frame[row] < frame[row - 1] ? 1 : 0;
            EXPECT_TRUE(distance[row] >= distance[row - 1] || frame[row] < frame[row - 1]) << row;
        }
    }
    // A crash may come before the recorder has seen the first of them.
    EXPECT_GE(vehicles, 2);
    EXPECT_LE(vehicles, 3);
    const auto scene = suite::checkScene(*table);
    ASSERT_TRUE(scene);
    EXPECT_LT(scene->largestError, 1e-6);
    EXPECT_GT(scene->trafficFrames, 0.0);
}

} // namespace

TEST_F(Acceptance, theSuiteOutlivesACrashAndTheDeathOfEachModule)
{
    install("vehicle -seconds 0 -engine electric -crash null -crashAfter 1");
    supervisor_ = start("supervisor", {"-c", "DEFAULT_1.6_Urban", "-grace", "0", "-pause", "0", "-patience", "100", "-tries", "10"}, variables());
    for (const std::string& module : moduleNames) {
        ASSERT_TRUE(await(module, "alive"));
    }
    EXPECT_GT(std::stoi("0" + objects()), 20);
    ASSERT_NO_FATAL_FAILURE(awaitReturn("vehicle", "crashed, dump "));
    std::string rows = awaitRows();
    for (const std::string module : {"vehicle", "recorder", "display", "sensor", "traffic"}) {
        ASSERT_TRUE(suite::killProcess(now_[module].process)) << module;
        ASSERT_NO_FATAL_FAILURE(awaitReturn(module, endOfKilled()));
        const std::string later = awaitRows();
        EXPECT_EQ(later.substr(0, rows.size()), rows) << "what was recorded before the death of the " << module;
        rows = later;
    }
    endAll();

    for (const std::string& module : moduleNames) {
        const std::vector<std::string> once = {"start", "alive", "dead", "restart", "alive", "ended"};
        const std::vector<std::string> twice = {"start", "alive", "dead", "restart", "alive", "dead", "restart", "alive", "ended"};
        EXPECT_EQ(story_[module], module == "vehicle" ? twice : once) << said_;
    }
    EXPECT_EQ(times("vehicle: engine electric"), 3u) << said_;
    EXPECT_EQ(times("vehicle: restarted at 0 s: the vehicle before was broken off at "), 2u) << said_;
    EXPECT_EQ(times("display: the vehicle drives ECE-15 (195 s) at 20 x real time"), 2u) << said_;
    EXPECT_EQ(times("recorder: goes on in "), 1u) << said_;
    checkRecording();

    // Nothing but the recording and the dump that was named.
    std::vector<std::string> after = files(), added;
    std::set_difference(after.begin(), after.end(), before_.begin(), before_.end(), std::back_inserter(added));
    ASSERT_THAT(added, ElementsAre(EndsWith(".dmp"), "suite/data/recordings/run.csv"));
    const std::size_t place = said_.find("crashed, dump ") + std::string("crashed, dump ").size();
    const std::string dump = said_.substr(place, said_.find(".dmp;", place) + 4 - place);
    EXPECT_TRUE(fs::equivalent(fs::u8path(dump), folder_.path() / fs::u8path(added[0]))) << dump;
}

TEST_F(Acceptance, aModuleThatHangsIsFoundKilledAndStartedAgain)
{
    install("vehicle -seconds 0");
    supervisor_ = start("supervisor", {"-c", "DEFAULT_1.6_Urban", "-grace", "2", "-pause", "0", "-tries", "1000"}, variables());
    ASSERT_TRUE(await("sensor", "alive"));
    const std::uint32_t process = now_["sensor"].process;
    ASSERT_TRUE(ProcessWin32::suspend(process));
    // On a busy computer it may have been silent for long before, and have come back.
    while (now_["sensor"].process == process) {
        const auto line = supervisor_.readLine(deadline);
        ASSERT_TRUE(line) << said_ << supervisor_.errorOutput();
        take(*line);
    }
    EXPECT_THAT(said_, HasSubstr("no sign of life; killed unless signs come again within 2 s\n"));
    EXPECT_THAT(said_, HasSubstr("killed, no sign of life for 2 s; starts again at once\n"));
    ASSERT_TRUE(await("sensor", "alive"));
    EXPECT_NE(now_["sensor"].process, process);
    supervisor_.kill();
    while (supervisor_.readLine(deadline)) {
    }
    EXPECT_FALSE(supervisor_.outputOpen()) << "a process is left behind";
}
