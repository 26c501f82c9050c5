#include "testing/Program.h"

#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace brvTesting {

std::string programBeside(const std::string& name)
{
    const auto me = std::filesystem::u8path(thisProgram());
    return (me.parent_path() / (name + me.extension().string())).u8string();
}

brvUtils::os::ChildCommand commandOf(const std::string& name, const Arguments& arguments, const Variables& variables)
{
    brvUtils::os::ChildCommand command;
    command.program = programBeside(name);
    command.arguments = arguments;
    command.environment = variables;
    command.pipeInput = command.pipeOutput = command.pipeError = true;
    return command;
}

ProgramResult runProgram(const brvUtils::os::ChildCommand& command, const std::string& input)
{
    constexpr brvUtils::os::Milliseconds patience = 30'000;
    brvUtils::os::ChildProcess process;
    EXPECT_EQ(process.start(command), 0u) << command.program;
    EXPECT_TRUE(input.empty() || process.write(input, patience));
    process.closeInput();
    ProgramResult result;
    while (const auto line = process.readLine(patience)) {
        result.out += *line + "\n";
    }
    const auto end = process.wait(patience);
    EXPECT_EQ(end.kind, brvUtils::os::ChildExit::Kind::exited) << command.program;
    result.code = end.code;
    result.err = process.errorOutput();
    return result;
}

} // namespace brvTesting
