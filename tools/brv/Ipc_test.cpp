// The program as a user runs it, beside modules that have objects open, are killed, or change them all the time.
#include "BeatLog.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/Program.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <Utilities/System.h>
#include <brvUtils/ipc/CompositeShm.h>
#include <brvUtils/ipc/ConfigurationPortManager.h>
#include <brvUtils/ipc/EventWin32.h>
#include <brvUtils/ipc/NamedObjects.h>
#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/ipc/ShmAble.h>
#include <brvUtils/ipc/ShmWin32.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cstring>
#include <filesystem>
#include <optional>

using brvTesting::Arguments;
using brvTesting::Child;
using brvTesting::childHear;
using brvTesting::childSay;
using nlohmann::json;
using Result = brvTesting::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

const bool takersKnown = brvUtils::takersAreKnown();

class Number : public brvUtils::ShmAble
{
public:
    int getId() override { return 7; }
    int getSize() override { return sizeof value; }
    void put(void* destination) override { std::memcpy(destination, &value, sizeof value); }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }

    int value = 0;
};

class Composite : public brvUtils::CompositeShm
{
public:
    explicit Composite(const std::string& name)
        : CompositeShm(brvUtils::ShmWin32::New, brvUtils::SemaphoreWin32::New, name.c_str(), sizeof(int), 5, 0)
    {
        addPart(number_);
    }
    bool write(int value)
    {
        number_.value = value;
        return put(number_, 30);
    }
    bool hold() { return getAccess(number_, 30); }

private:
    Number number_;
};

/// Has a composite segment open, holds its part, or writes to it without end.
BRV_CHILD(module)
{
    Composite composite(arguments[0]);
    brvUtils::EventWin32 event((arguments[0] + " event").c_str(), true, true);
    const bool good = arguments[1] != "hold" || composite.hold();
    childSay(good ? "ready" : "failed");
    for (int value = 1; arguments[1] == "write"; ++value) {
        composite.write(value);
    }
    childHear();
    return 0;
}

BRV_CHILD(portUser)
{
    std::vector<unsigned short> ports;
    auto* const manager = brvUtils::ConfigurationPortManager::getInstance();
    childSay(manager != nullptr && manager->allocate(2, ports) ? "ready" : "failed");
    childHear();
    return 0;
}

brvUtils::os::ChildCommand program(const Arguments& arguments)
{
    return brvTesting::commandOf("brv", arguments);
}

class Ipc : public testing::Test
{
protected:
    Result run(const Arguments& arguments, const std::string& input = "")
    {
        return brvTesting::runProgram(program(arguments), input);
    }

    json document(Arguments arguments)
    {
        arguments.emplace_back("--json");
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        const json parsed = json::parse(result.out, nullptr, false);
        EXPECT_FALSE(parsed.is_discarded()) << result.out;
        return parsed;
    }

    /// The row of the list whose name contains that text; null without one.
    static json row(const json& list, const std::string& part)
    {
        for (const json& object : list["objects"]) {
            if (object["name"].get<std::string>().find(part) != std::string::npos) {
                return object;
            }
        }
        return nullptr;
    }

    std::string name_ = brvTesting::uniqueName();
    brvTesting::TemporaryFolder folder_;
    brvTesting::EnvironmentGuard nameSpace_{"STUDIO_IPC_NAMESPACE", (folder_.path() / "objects").string()};
};

TEST_F(Ipc, ListsAndShowsWhatModulesHave)
{
    EXPECT_TRUE(row(document({"ipc", "list", "--sample", "0"}), name_).is_null());
    Child module("module", {name_, "hold"});
    ASSERT_TRUE(module.awaitLine("ready"));
    const json list = document({"ipc", "list", "--sample", "0.01", "--all"});
    const json lock = row(list, name_ + "_5_" + Utilities::System::GetEffectiveUserName() + " Part 7");
    EXPECT_TRUE(lock["state"]["taken"].get<bool>()) << lock;
    EXPECT_TRUE(row(list, name_ + " event")["state"]["set"].get<bool>());
    EXPECT_FALSE(lock["changed"].get<bool>());
    if (takersKnown) {
        EXPECT_EQ(lock["state"]["taker"]["process"], module.id());
        EXPECT_EQ(lock["holders"]["known"][0]["program"], "brv_ipc_test");
        EXPECT_THAT(run({"ipc", "list", "--sample", "0"}).out, AllOf(HasSubstr("NAME"), HasSubstr("taken by"), HasSubstr(std::to_string(module.id()))));
    } else {
        EXPECT_TRUE(lock["holders"].is_null());
        EXPECT_THAT(run({"ipc", "list", "--sample", "0"}).out, AllOf(HasSubstr("unknown"), Not(HasSubstr(name_ + " event"))));
    }
    EXPECT_TRUE(row(document({"ipc", "list", "--sample", "0", "--instance", "other-" + name_}), name_).is_null());
}

TEST_F(Ipc, ShowsTheLocksAndTheLayoutVersionOfASegment)
{
    Child module("module", {name_, "hold"});
    ASSERT_TRUE(module.awaitLine("ready"));
    std::string segment;
    for (const brvUtils::NamedObject& object : brvUtils::lookAtNamedObjects().objects) {
        if (object.role == brvUtils::NamedObject::Role::segment && object.name.find(name_) != std::string::npos) {
            segment = object.name;
        }
    }
    const json shown = document({"ipc", "show", segment});
    EXPECT_EQ(shown["layout_version"], 5);
    ASSERT_EQ(shown["locks"].size(), 2u);
    for (const json& lock : shown["locks"]) {
        EXPECT_EQ(lock["state"]["taken"], lock["part"] == 7) << lock;
    }
    const Result none = run({"ipc", "show", "no such " + name_});
    EXPECT_EQ(none.code, 1);
    EXPECT_THAT(none.err, HasSubstr("there is no object \"no such " + name_));
    EXPECT_THAT(run({"ipc", "show", name_, "--all"}).err, HasSubstr("is part of 2 names"));
}

TEST_F(Ipc, RepairFreesWhatADeadModuleHeldOnceAndAsksBefore)
{
    Composite composite(name_);
    Child module("module", {name_, "hold"});
    ASSERT_TRUE(module.awaitLine("ready"));
    if (!takersKnown) {
        const Result result = run({"ipc", "repair"});
        EXPECT_EQ(result.code, 0);
        EXPECT_THAT(result.out, AllOf(HasSubstr("does not tell who took"), HasSubstr(name_)));
        return;
    }
    EXPECT_THAT(run({"ipc", "repair", "--yes"}).out, HasSubstr("nothing to repair")) << "its taker runs";
    module.kill();
    const Result refused = run({"ipc", "repair"}, "n\n");
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.out, AllOf(HasSubstr(name_), HasSubstr("Nothing was changed")));
    EXPECT_THAT(refused.err, HasSubstr("y/N"));
    EXPECT_EQ(run({"ipc", "repair"}).code, 1) << "no answer is no";
    EXPECT_EQ(run({"ipc", "repair", "--json"}).code, 1);
    const json freed = document({"ipc", "repair", "--yes"});
    ASSERT_EQ(freed["locks"].size(), 1u) << freed;
    EXPECT_EQ(freed["locks"][0]["freed"], true);
    EXPECT_EQ(freed["locks"][0]["taker"]["process"], module.id());
    EXPECT_THAT(run({"ipc", "repair"}).out, HasSubstr("nothing to repair"));
    EXPECT_TRUE(composite.write(1)) << "no exchange is lost";
}

TEST_F(Ipc, WatchSeesSegmentsChange)
{
    Child writer("module", {name_, "write"});
    ASSERT_TRUE(writer.awaitLine("ready"));
    brvUtils::os::ChildProcess watch;
    ASSERT_EQ(watch.start(program({"ipc", "watch", "--interval", "0.05", "--json"})), 0u);
    bool seen = false;
    for (int refresh = 0; !seen && refresh < 400; ++refresh) {
        const auto line = watch.readLine(30'000);
        ASSERT_TRUE(line.has_value());
        const json document = json::parse(*line);
        for (const json& object : document["objects"]) {
            seen = seen || (object["kind"] == "segment" && object["age"].is_number() && object["rate"].get<double>() > 0);
        }
    }
    EXPECT_TRUE(seen);
    watch.kill();
    const Result counted = run({"ipc", "watch", "--interval", "0.05", "--count", "2"});
    EXPECT_EQ(counted.code, 0);
    EXPECT_THAT(counted.out, AllOf(HasSubstr("LAST CHANGE"), Not(HasSubstr("\x1b"))));
}

TEST_F(Ipc, SaysWhyThereIsNothingToBeSeen)
{
    if (!takersKnown) {
        GTEST_SKIP() << "there is always a directory of objects here";
    }
    Result result = run({"ipc", "list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("nobody has a named object of the suite open here"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "objects"));
    std::filesystem::create_directory(folder_.path() / "objects");
    std::filesystem::permissions(folder_.path() / "objects", std::filesystem::perms(0777));
    for (const char* command : {"list", "repair", "watch"}) {
        result = run({"ipc", command});
        EXPECT_EQ(result.code, 1) << command;
        EXPECT_THAT(result.err, HasSubstr("may not be used")) << command;
    }
    EXPECT_THAT(run({"ipc", "list", "--json"}).out, HasSubstr("\"error\""));
    EXPECT_EQ(run({"ports"}).code, 1) << "not that nobody has a port";
    EXPECT_THAT(run({"doctor"}).out, HasSubstr("chmod 2770"));
    std::filesystem::permissions(folder_.path() / "objects", std::filesystem::perms(0770));
    EXPECT_THAT(run({"doctor"}).out, Not(HasSubstr("chmod")));
}

TEST_F(Ipc, PortsTellsWhoHasThem)
{
    EXPECT_THAT(run({"ports"}).out, HasSubstr("nobody has a port"));
    // Keeps the table alive when the other one is killed.
    ASSERT_NE(brvUtils::ConfigurationPortManager::getInstance(), nullptr);
    Child user("portUser");
    ASSERT_TRUE(user.awaitLine("ready"));
    json ports = document({"ports"})["ports"];
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0]["port"], 25099);
    EXPECT_EQ(ports[0]["process"], user.id());
    EXPECT_EQ(ports[0]["alive"], true);
    EXPECT_THAT(ports[0]["program"].get<std::string>(), HasSubstr("brv_ipc_test"));
    user.kill();
    ports = document({"ports"})["ports"];
    ASSERT_EQ(ports.size(), 2u) << "nothing is freed by looking";
    EXPECT_EQ(ports[1]["alive"], false);
    delete brvUtils::ConfigurationPortManager::getInstance();
}

TEST_F(Ipc, JitterCountsEachBeatOnce)
{
    for (const char* source : {"timer", "yield", "semaphore", "semaphore-yield"}) {
        const json measured = document({"jitter", "--period", "2ms", "--seconds", "0.05", "--source", source});
        int beats = 0;
        for (const json& row : measured["histogram"]) {
            beats += row["beats"].get<int>();
        }
        EXPECT_EQ(beats, 25) << source;
        EXPECT_LE(measured["lateness_us"]["median"].get<double>(), measured["lateness_us"]["maximum"].get<double>());
        EXPECT_NE(measured["scheduling"], "unknown");
    }
    EXPECT_THAT(run({"jitter", "--period", "1ms", "--seconds", "0.02", "--busy"}).out, AllOf(HasSubstr("99.9 %, us"), HasSubstr("#")));
    for (const Arguments& wrong : {Arguments{"--period", "1"}, {"--period", "soon"}, {"--seconds", "0"}, {"--source", "sun"}}) {
        Arguments arguments{"jitter"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(run(arguments).code, 2) << wrong[1];
    }
    EXPECT_EQ(run({"jitter", "--period", "2s", "--seconds", "1"}).code, 1);
}

TEST(BeatLog, AGridPointIsServedByTheFirstBeatBehindIt)
{
    brvTool::BeatLog log(1e-6, 3);
    EXPECT_TRUE(log.latenesses().empty());
    log.start();
    while (!log.full()) {
        log.beat();
    }
    EXPECT_EQ(log.latenesses().size(), 3u);
    EXPECT_EQ(brvTool::percentile({1, 2, 3, 4}, 0.5), 2);
    EXPECT_EQ(brvTool::percentile({1, 2, 3, 4}, 1), 4);
    EXPECT_EQ(brvTool::percentile({}, 0.5), 0);
}

} // namespace
