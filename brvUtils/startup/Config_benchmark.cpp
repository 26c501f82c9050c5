// How long it takes to load and select configurations and to find files through them, beside the same done with
// Boost.PropertyTree and std::filesystem, and beside the bare calls of the system.

#include "brvUtils/os/linux/BareFileCalls.h"
#include "brvUtils/startup/EnvConfig.h"
#include "testing/BenchmarkTable.h"
#include "testing/CapturedOutput.h"
#include "testing/EnvironmentGuard.h"
#include "testing/Interleaved.h"
#include "testing/TemporaryFolder.h"

#include <boost/property_tree/ini_parser.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using namespace brvTesting;
using brvUtils::EnvConfig;
using brvUtils::os::bareExists;
using brvUtils::os::bareRead;
namespace fs = std::filesystem;
namespace tree = boost::property_tree;

constexpr int configurations = 1000;
constexpr int searchedFolders = 8;

std::string name(int number)
{
    return "configuration" + std::to_string(number);
}

/// A suite's root folder with many configurations.
class Suite
{
public:
    Suite()
    {
        std::string list;
        for (int i = 0; i < configurations; ++i) {
            list += name(i) + " = ${STUDIO_PATH}/" + name(i) + "\n";
            root_.write(name(i) + "/version.cfg", "1.6\n");
        }
        root_.write("configurations.cfg", list);
        root_.write(name(500) + "/Process.xfg", "");
        std::string path;
        for (int i = 0; i < searchedFolders; ++i) {
            root_.write("data/folder" + std::to_string(i) + "/other", "");
            path += (i > 0 ? ";" : "") + std::string("${STUDIO_PATH}/data/folder") + std::to_string(i);
        }
        root_.write("data/folder7/file", "");
        std::string data = "CARS = ${STUDIO_PATH}/${BRV_BENCH_PART}/cars\nSEARCH = " + path + "\n";
        for (int i = 0; i < 100; ++i) {
            data += "KEY" + std::to_string(i) + " = ${STUDIO_PATH}/x\n";
        }
        root_.write(name(500) + "/datafile.cfg", data);
    }

    std::string file(const std::string& relative) const { return root_.file() + "/" + relative; }

private:
    const TemporaryFolder root_{"brv-bench"};
    const EnvironmentGuard studio_{"STUDIO_PATH", root_.file()};
    const EnvironmentGuard part_{"BRV_BENCH_PART", "part"};
};

/// Replaces "${NAME}" as often as it stands there.
std::string resolved(std::string text)
{
    for (std::size_t start; (start = text.find("${")) != std::string::npos;) {
        const std::size_t end = text.find('}', start);
        text.replace(start, end + 1 - start, std::getenv(text.substr(start + 2, end - start - 2).c_str()));
    }
    return text;
}

template <typename Work>
Contender contender(const char* who, Work work)
{
    return {who, [work](std::uint64_t iterations) {
                return nanosecondsOf([&] {
                    for (std::uint64_t i = 0; i < iterations; ++i) {
                        work();
                    }
                });
            }};
}

BenchmarkRow row(const std::string& what, const std::string& unit, double scale, const std::vector<Contender>& contenders)
{
    const std::vector<double> times = medianPerIteration(contenders);
    return {what, unit, times[0] / scale, {{"boost + std", times[1] / scale}}, times[2] / scale};
}

BenchmarkRow loadAndSelect(const Suite& suite)
{
    const std::string list = suite.file("configurations.cfg");
    const auto ours = [] {
        EnvConfig::reload();
        EnvConfig::setConfig(name(500), true);
    };
    const auto peer = [&] {
        tree::ptree read;
        tree::read_ini(list, read);
        for (const auto& [key, value] : read) {
            const std::string folder = resolved(value.data());
            std::string version;
            if (fs::exists(folder) && fs::is_regular_file(folder + "/version.cfg")) {
                std::ifstream(folder + "/version.cfg") >> version;
            }
        }
        tree::ptree data;
        tree::read_ini(suite.file(name(500) + "/datafile.cfg"), data);
    };
    const auto limit = [&] {
        bareRead(list);
        for (int i = 0; i < configurations; ++i) {
            const std::string folder = suite.file(name(i));
            bareExists(folder);
            bareRead(folder + "/version.cfg");
        }
        bareRead(suite.file(name(500) + "/datafile.cfg"));
    };
    return row("load 1,000 configurations and select one", "ms", 1e6, {contender("ours", ours), contender("peer", peer), contender("limit", limit)});
}

BenchmarkRow lookUp(const Suite& suite)
{
    tree::ptree data;
    tree::read_ini(suite.file(name(500) + "/datafile.cfg"), data);
    return row("first path of a keyword, two variables", "us", 1e3,
        {contender("ours", [] { EnvConfig::getFirstPath("CARS/small"); }),
            contender("peer", [&] { resolved(data.get<std::string>("CARS") + "/small"); }),
            contender("limit", [] { std::string(std::getenv("STUDIO_PATH")).append("/").append(std::getenv("BRV_BENCH_PART")).append("/cars/small"); })});
}

BenchmarkRow search(const Suite& suite)
{
    tree::ptree data;
    tree::read_ini(suite.file(name(500) + "/datafile.cfg"), data);
    std::vector<std::string> files;
    for (int i = 0; i < searchedFolders; ++i) {
        files.push_back(suite.file("data/folder" + std::to_string(i) + "/file"));
    }
    const auto peer = [&] {
        const std::string value = data.get<std::string>("SEARCH");
        for (std::size_t begin = 0; begin < value.size();) {
            const std::size_t end = std::min(value.find(';', begin), value.size());
            if (fs::exists(resolved(value.substr(begin, end - begin)) + "/file")) {
                return;
            }
            begin = end + 1;
        }
    };
    const auto limit = [&] {
        for (const std::string& file : files) {
            bareExists(file);
        }
    };
    return row("file in the last of 8 folders", "us", 1e3,
        {contender("ours", [] { EnvConfig::findInPath("SEARCH", "file"); }), contender("peer", peer), contender("limit", limit)});
}

} // namespace

int main(int argc, char** argv)
{
    BenchmarkTable table(argc, argv);
    {
        const CapturedOutput quiet; // the library tells what it reads
        const Suite suite;
        EnvConfig::setConfig(name(500), false);
        table.add(loadAndSelect(suite));
        table.add(lookUp(suite));
        table.add(search(suite));
    }
    return table.finish();
}
