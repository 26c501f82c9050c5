#include "brvUtils/core/FileNames.h"
#include "brvUtils/os/linux/BareProcessCalls.h"
#include "brvUtils/platform/CrashDump.h"
#include "brvUtils/platform/MachineSetting.h"
#include "brvUtils/platform/PlugInLoader.h"
#include "brvUtils/platform/ProcessWin32.h"
#include "brvUtils/startup/ModulePaths.h"
#include "testing/BenchmarkTable.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/Interleaved.h"
#include "testing/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// What the services of the system cost: loading a plug-in, looking for a program, reading a setting, writing a dump.

namespace {

using namespace brvTesting;

void check(bool fine, const char* what)
{
    if (!fine) {
        std::fprintf(stderr, "bench_platform: %s\n", what);
        std::exit(1);
    }
}

BRV_CHILD(oneOfMany)
{
    childSay("ready");
    childHear();
    return 0;
}

/// Runs each way of doing the same for that many iterations in turn.
std::vector<double> measure(const std::vector<std::pair<std::string, std::function<void()>>>& ways)
{
    std::vector<Contender> contenders;
    for (const auto& [name, work] : ways) {
        contenders.push_back({ name, [&work = work](std::uint64_t iterations) {
                                  return nanosecondsOf([&] {
                                      for (std::uint64_t i = 0; i < iterations; ++i) {
                                          work();
                                      }
                                  });
                              } });
    }
    return medianPerIteration(contenders);
}

BenchmarkRow isLaunchedRow()
{
    constexpr int many = 300;
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < many; ++i) {
        children.push_back(std::make_unique<Child>("oneOfMany"));
        check(children.back()->expectLine("ready"), "a child does not start");
    }
    const std::vector<double> times = measure({
        { "ours", [] { check(!ProcessWin32::isLaunched("there is none"), "there is such a program"); } },
        { "bare", [] { check(brvUtils::os::bareReadExecutables() >= many, "there are too few processes"); } },
    });
    return { "isLaunched, not found, 300 processes and more", "ms", times[0] / 1e6, {}, times[1] / 1e6 };
}

BenchmarkRow plugInRow()
{
    const std::string path = brvUtils::getPath(brvUtils::getBrvUtilsPath()) + "/test-plug-ins/answering" + PLUG_IN_EXTENSION;
    const std::string extension = std::string(PLUG_IN_EXTENSION).substr(1);
    const std::vector<double> times = measure({
        { "ours", [&] { check(PlugInLoader("answering", extension, "test-plug-ins").getSymbol("answer") != nullptr, "no plug-in"); } },
        { "bare", [&] { check(brvUtils::os::bareLoad(path.c_str(), "answer"), "no library"); } },
    });
    return { "load a plug-in, get a symbol, unload", "us", times[0] / 1e3, {}, times[1] / 1e3 };
}

BenchmarkRow settingRow()
{
    const TemporaryFolder folder;
    const EnvironmentGuard place("STUDIO_SETTINGS_DIR", folder.file());
    std::string text = "a setting of this computer";
    check(brvUtils::machineSetting("bench", "name", text), "the setting cannot be stored");
    const std::string file = folder.file("bench.setting");
    const std::vector<double> times = measure({
        { "ours", [&] { check(brvUtils::machineSetting("bench", "name", text), "the setting is gone"); } },
        { "bare", [&] {
             std::string line;
             check(static_cast<bool>(std::getline(std::ifstream(file), line)), "the file is gone");
         } },
    });
    return { "read a setting", "us", times[0] / 1e3, {}, times[1] / 1e3 };
}

/// Of a process with the threads and libraries of a module of the suite. The bare work is to write as many bytes to a file.
BenchmarkRow dumpRow()
{
    const TemporaryFolder folder;
    std::promise<void> end;
    const std::shared_future<void> wait = end.get_future().share();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([wait] { wait.wait(); });
    }
    const std::string dump = folder.file("of-this-process.dmp");
    check(GenerateDump(dump, nullptr), "no dump can be written");
    const std::string bytes = folder.read("of-this-process.dmp");
    const std::vector<double> times = measure({
        { "ours", [&] { check(GenerateDump(dump, nullptr), "no dump can be written"); } },
        { "bare", [&] { folder.write("copy.dmp", bytes); } },
    });
    end.set_value();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return { "dump of a process of 9 threads", "ms", times[0] / 1e6, {}, times[1] / 1e6 };
}

} // namespace

int main(int argc, char** argv)
{
    if (const auto exitCode = runAsChild(argc, argv)) {
        return *exitCode;
    }
    BenchmarkTable table(argc, argv);
    table.add(plugInRow());
    table.add(settingRow());
    table.add(dumpRow());
    table.add(isLaunchedRow());
    return table.finish();
}
