// The side of the child: which function to run, and its talk with the parent.
#include "testing/ThisProgram.h"

#include "brvUtils/os/Faults.h"
#include "brvUtils/os/Process.h"
#include "brvUtils/os/StandardStreams.h"
#include "brvUtils/os/Utf8Arguments.h"
#include "testing/Child.h"

#include <cstdio>
#include <iostream>
#include <map>

namespace brvTesting {

namespace {

std::string ourProgram;

using Function = int (*)(const Arguments&);

std::map<std::string, Function>& functions()
{
    static std::map<std::string, Function> all;
    return all;
}

} // namespace

const std::string& thisProgram()
{
    return ourProgram;
}

bool addChildFunction(const char* name, Function function)
{
    if (!functions().emplace(name, function).second) {
        std::fprintf(stderr, "two child functions are named %s\n", name);
        return false;
    }
    return true;
}

std::optional<int> runAsChild(int argc, char** argv)
{
    brvUtils::os::pinFaultReports();
    ourProgram = brvUtils::os::executablePath();
    Arguments arguments = brvUtils::os::utf8Arguments(argc, argv);
    const std::string flag = childFlag;
    if (arguments.size() < 2 || arguments[1].compare(0, flag.size(), flag) != 0) {
        return std::nullopt;
    }
    brvUtils::os::endWithoutTraces();
    brvUtils::os::useBinaryStandardStreams();
    const std::string name = arguments[1].substr(flag.size());
    const auto found = functions().find(name);
    if (found == functions().end()) {
        std::fprintf(stderr, "no child function is named %s\n", name.c_str());
        return 127;
    }
    arguments.erase(arguments.begin(), arguments.begin() + 2);
    return found->second(arguments);
}

void childSay(const std::string& line)
{
    std::fwrite((line + "\n").data(), 1, line.size() + 1, stdout);
    std::fflush(stdout);
}

std::optional<std::string> childHear()
{
    std::string line;
    if (!std::getline(std::cin, line)) {
        return std::nullopt;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

} // namespace brvTesting
