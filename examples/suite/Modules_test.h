#pragma once

#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/ThisProgram.h"
#include "testing/UniqueName.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

using brvTesting::Arguments;
using brvTesting::Variables;
using brvUtils::os::ChildExit;
using brvUtils::os::ChildProcess;
using testing::HasSubstr;
using testing::StartsWith;

constexpr brvUtils::os::Milliseconds deadline = 30'000; // ms
const ChildExit success{ChildExit::Kind::exited, 0};
const ChildExit failure{ChildExit::Kind::exited, 1};

/// The programs, in an instance of the suite of their own and without a word of the environment about configurations.
class Modules : public testing::Test
{
protected:
    static std::filesystem::path programFolder() { return std::filesystem::u8path(brvTesting::thisProgram()).parent_path(); }

    /// Starts the program that lies beside this one.
    ChildProcess start(const std::string& module, const Arguments& arguments, Variables variables = {})
    {
        const auto extension = std::filesystem::u8path(brvTesting::thisProgram()).extension().string();
        variables.emplace_back("STUDIO_INSTANCE", instance_);
        brvUtils::os::ChildCommand command;
        command.program = (programFolder() / (module + extension)).u8string();
        command.arguments = arguments;
        command.environment = variables;
        command.pipeOutput = command.pipeError = true;
        ChildProcess process;
        EXPECT_EQ(process.start(command), 0u) << command.program;
        return process;
    }

    /// The next line that holds the text; what stands before it is passed over.
    static std::string lineWith(ChildProcess& process, const std::string& text)
    {
        std::string passed;
        while (const auto line = process.readLine(deadline)) {
            if (line->find(text) != std::string::npos) {
                return *line;
            }
            passed += *line + "\n";
        }
        ADD_FAILURE() << "no line with \"" << text << "\" in\n" << passed << process.errorOutput();
        return {};
    }

    std::string instance_ = brvTesting::uniqueName();

private:
    brvTesting::EnvironmentGuard studio_{"STUDIO_PATH"}, local_{"LOCAL_STUDIO_PATH"}, compute_{"COMPUTE_PATH"};
};
