// The side of the child: which function to run, and its talk with the parent.
#include "testing/ThisProgram.h"

#include "brvUtils/os/Faults.h"
#include "brvUtils/os/StandardStreams.h"
#include "testing/Child.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
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
    ourProgram = std::filesystem::absolute(argv[0]).u8string();
    if (argc < 2 || std::strncmp(argv[1], childFlag, std::strlen(childFlag)) != 0) {
        return std::nullopt;
    }
    brvUtils::os::endWithoutTraces();
    brvUtils::os::useBinaryStandardStreams();
    const auto found = functions().find(argv[1] + std::strlen(childFlag));
    if (found == functions().end()) {
        std::fprintf(stderr, "no child function of this name: %s\n", argv[1]);
        return 127;
    }
    return found->second(Arguments(argv + 2, argv + argc));
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
