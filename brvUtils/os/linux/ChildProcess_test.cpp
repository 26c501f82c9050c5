#include "testing/Child.h"
#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace brvUtils::os {
namespace {

BRV_CHILD(answers)
{
    brvTesting::childSay("heard " + brvTesting::childHear().value_or("nothing"));
    return 7;
}

ChildCommand answers()
{
    ChildCommand command;
    command.program = brvTesting::thisProgram();
    command.arguments = { std::string(brvTesting::childFlag) + "answers" };
    command.pipeInput = command.pipeOutput = command.pipeError = true;
    return command;
}

/// Starts a child, talks with it, and gives its exit code.
int codeOfATalk()
{
    ChildProcess child;
    const bool talked = child.start(answers()) == error::none && child.write("hello\n", 30000) && child.readLine(30000) == "heard hello";
    const ChildExit exit = child.wait(30000);
    return talked && exit.kind == ChildExit::Kind::exited ? exit.code : 99;
}

BRV_CHILD(talksWithoutStandardStreams)
{
    for (const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
        close(stream);
    }
    return codeOfATalk();
}

BRV_CHILD(talksIgnoringTheEndsOfChildren)
{
    std::signal(SIGCHLD, SIG_IGN);
    {
        ChildProcess killed;
        killed.start(answers());
    }
    return codeOfATalk() == ChildExit::unknownCode ? 0 : 99;
}

TEST(ChildProcess, TalksWithItsChildWhenThisProcessHasNoStandardStreams)
{
    brvTesting::Child child("talksWithoutStandardStreams");
    child.expectExit(7);
}

TEST(ChildProcess, SeesTheEndThatTheSystemKeepsNoCodeOf)
{
    brvTesting::Child child("talksIgnoringTheEndsOfChildren");
    child.expectExit(0);
}

} // namespace
} // namespace brvUtils::os
