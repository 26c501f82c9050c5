#include "testing/Child.h"

#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

namespace brvTesting {

using brvUtils::os::ChildExit;
using brvUtils::os::ErrorCode;

namespace {

std::string describe(const ChildExit& exit)
{
    switch (exit.kind) {
    case ChildExit::Kind::running: return "runs";
    case ChildExit::Kind::exited: return "exited with " + std::to_string(exit.code);
    case ChildExit::Kind::killed: return "was killed by signal " + std::to_string(exit.code);
    }
    return {};
}

} // namespace

Child::Child(const std::string& name, const Arguments& arguments, const Variables& variables) : name_(name)
{
    brvUtils::os::ChildCommand command;
    command.program = thisProgram();
    command.arguments = arguments;
    command.arguments.insert(command.arguments.begin(), childFlag + name);
    command.environment = variables;
    command.pipeInput = command.pipeOutput = command.pipeError = true;
    const ErrorCode error = process_.start(command);
    if (error != brvUtils::os::error::none) {
        failed_ = true;
        ADD_FAILURE() << "child " << name << " not started: error " << error;
    }
}

Child::~Child()
{
    // A report of a sanitizer, perhaps, that no expectation has shown.
    if (testing::Test::HasFailure() && !failed_ && !err().empty()) {
        ADD_FAILURE() << "error stream of child " << name_ << ":\n" << err();
    }
}

bool Child::expectLine(const std::string& text, const char* file, int line)
{
    const auto got = next();
    return got == text || fail("expected the line \"" + text + "\"", file, line);
}

bool Child::awaitLine(const std::string& text, const char* file, int line)
{
    while (const auto got = next()) {
        if (*got == text) {
            return true;
        }
    }
    return fail("awaited the line \"" + text + "\"", file, line);
}

std::string Child::readLine(const char* file, int line)
{
    const auto got = next();
    if (!got && process_.outputOpen()) {
        fail("expected a line", file, line);
    }
    return got.value_or("");
}

std::optional<std::string> Child::next()
{
    auto got = process_.readLine(timeout());
    if (got) {
        lines_ += *got + "\n";
    }
    return got;
}

bool Child::send(const std::string& text, const char* file, int line)
{
    return process_.write(text + "\n", timeout()) || fail("could not send \"" + text + "\"", file, line);
}

bool Child::kill(const char* file, int line)
{
    process_.kill();
    return waitForEnd(file, line).kind != ChildExit::Kind::running;
}

bool Child::expectExit(int code, const char* file, int line)
{
    return expectEnd({ChildExit::Kind::exited, code}, file, line);
}

bool Child::expectAbort(const char* file, int line)
{
    return expectEnd(brvUtils::os::exitAfterAbort(), file, line);
}

bool Child::expectKilled(const char* file, int line)
{
    return expectEnd(brvUtils::os::exitAfterKill(), file, line);
}

ChildExit Child::waitForEnd(const char* file, int line)
{
    const ChildExit exit = process_.wait(timeout());
    if (exit.kind == ChildExit::Kind::running) {
        fail("expected its end", file, line);
    }
    return exit;
}

bool Child::expectEnd(const ChildExit& expected, const char* file, int line)
{
    return process_.wait(timeout()) == expected || fail("expected that it " + describe(expected), file, line);
}

bool Child::fail(const std::string& what, const char* file, int line)
{
    const ChildExit exit = process_.wait(0);
    if (exit.kind == ChildExit::Kind::running) {
        process_.kill();
        process_.wait(timeout());
    }
    failed_ = true;
    ADD_FAILURE_AT(file, line) << "child " << name_ << ": " << what << ", but it "
                               << (exit.kind == ChildExit::Kind::running ? "still ran after the deadline or said something else"
                                                                        : describe(exit))
                               << ".\nOutput: " << lines_ << process_.output() << "\nError stream: " << err();
    return false;
}

} // namespace brvTesting
