#pragma once

#include "testing/Child.h"

namespace brvTesting {

/// What a program said, and how it ended.
struct ProgramResult
{
    int code = -1;
    std::string out; ///< Line ends are "\n".
    std::string err;
};

/// The path of a program that the build puts beside this one, by its name without suffix; UTF-8.
std::string programBeside(const std::string& name);

/// How to start such a program, with pipes to all its streams. The variables are added to its environment.
brvUtils::os::ChildCommand commandOf(const std::string& name, const Arguments& arguments, const Variables& variables = {});

/// Runs a program to its end with this input. The test fails when it cannot be started or does not end by itself in time.
ProgramResult runProgram(const brvUtils::os::ChildCommand& command, const std::string& input = "");

} // namespace brvTesting
