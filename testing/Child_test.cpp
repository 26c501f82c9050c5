#include "testing/Child.h"

#include "testing/ThisProgram.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <thread>

using namespace brvTesting;

BRV_CHILD(exitWith)
{
    return std::stoi(arguments[0]);
}

BRV_CHILD(aborts)
{
    std::abort();
}

BRV_CHILD(hears)
{
    childSay("ready");
    while (const auto line = childHear()) {
        childSay("heard " + *line);
    }
    childSay("end of input");
    return 0;
}

BRV_CHILD(echoesArguments)
{
    childSay(std::to_string(arguments.size()));
    for (const std::string& argument : arguments) {
        childSay(argument);
    }
    return 0;
}

BRV_CHILD(saysVariable)
{
    const char* value = std::getenv(arguments[0].c_str());
    childSay(value != nullptr ? value : "(none)");
    return 0;
}

BRV_CHILD(writesMuch)
{
    const std::string line(999, '.');
    for (int i = 0; i < 1000; ++i) {
        std::cerr << line << '\n';
    }
    childSay("done");
    return 0;
}

BRV_CHILD(neverEnds)
{
    childSay("here");
    for (;;) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

BRV_CHILD(startsAnother)
{
    brvUtils::os::ChildCommand command;
    command.program = thisProgram();
    command.arguments = {std::string(childFlag) + "neverEnds"};
    brvUtils::os::ChildProcess another;
    const auto error = another.start(command);
    childHear();
    return static_cast<int>(error);
}

TEST(Child, ReportsHowItEnded)
{
    Child zero("exitWith", {"0"});
    Child seven("exitWith", {"7"});
    Child aborting("aborts");
    Child killed("hears");
    zero.expectExit(0);
    seven.expectExit(7);
    aborting.expectAbort();
    killed.expectLine("ready");
    killed.kill();
    killed.expectKilled();
    EXPECT_NONFATAL_FAILURE(seven.expectExit(0), "exited with 7");
    EXPECT_NONFATAL_FAILURE(seven.expectKilled(), "exited with 7");
}

TEST(Child, TalksInLines)
{
    Child child("hears");
    Child sibling("hears"); // Must not keep the first one's pipes open.
    child.expectLine("ready");
    child.send("one two");
    child.expectLine("heard one two");
    child.send("");
    child.send("three");
    child.awaitLine("heard three");
    child.closeInput();
    child.expectLine("end of input");
    child.expectExit(0);
    EXPECT_EQ(child.readLine(), "");
    EXPECT_NONFATAL_FAILURE(child.send("four"), "could not send");
}

TEST(Child, IsEndedWhenItHangs)
{
    Child child("hears");
    child.setDeadline(std::chrono::milliseconds(100));
    EXPECT_NONFATAL_FAILURE(child.expectExit(0), "expected that it exited with 0, but it still ran");
    child.setDeadline(std::chrono::seconds(30));
    child.expectKilled();
}

TEST(Child, IsEndedWhenItDoesNotRead)
{
    Child child("neverEnds");
    child.setDeadline(std::chrono::milliseconds(100));
    EXPECT_NONFATAL_FAILURE(child.send(std::string(1 << 20, 'x')), "could not send");
    child.setDeadline(std::chrono::seconds(30));
    child.expectKilled();
}

TEST(Child, DoesNotOutliveWhoStartedIt)
{
    Child child("startsAnother");
    child.expectLine("here"); // From the other one, which has inherited the pipe and keeps it open while it lives.
    child.kill();
    EXPECT_EQ(child.readLine(), "");
}

TEST(ChildProcess, TellsWhyItCouldNotStart)
{
    brvUtils::os::ChildCommand command;
    command.program = thisProgram() + "-is-not-there";
    brvUtils::os::ChildProcess process;
    EXPECT_EQ(process.start(command), brvUtils::os::error::fileNotFound);
    EXPECT_EQ(process.id(), 0u);
}

TEST(Child, FailsAtAnotherLineAndShowsWhatItRead)
{
    Child child("hears");
    EXPECT_NONFATAL_FAILURE(child.expectLine("steady"), "Output: ready");
    Child other("hears");
    other.closeInput();
    EXPECT_NONFATAL_FAILURE(other.awaitLine("never"), "end of input");
}

TEST(Child, GetsArgumentsAsTheyAre)
{
    const Arguments arguments{"plain", "", "two words", "\"quoted\"", "back\\slash", "ends in \\", "\\\\\"both\\\" ",
        "tab\there", "%PATH% $HOME *", "\xC3\xA4\xE2\x82\xAC", "--gtest_filter=none"};
    Child child("echoesArguments", arguments);
    child.expectLine(std::to_string(arguments.size()));
    for (const std::string& argument : arguments) {
        child.expectLine(argument);
    }
    child.expectExit(0);
}

TEST(Child, GetsVariablesOnTopOfOurs)
{
    Child own("saysVariable", {"PATH"}, {{"BRV_TESTING_VALUE", "a b=c"}});
    EXPECT_NE(own.readLine(), "(none)");
    Child added("saysVariable", {"BRV_TESTING_VALUE"}, {{"BRV_TESTING_VALUE", "a b=c"}});
    added.expectLine("a b=c");
    Child replaced("saysVariable", {"PATH"}, {{"PATH", "nowhere"}});
    replaced.expectLine("nowhere");
}

TEST(Child, IsNotStoppedByAFullPipe)
{
    Child child("writesMuch");
    child.expectLine("done");
    child.expectExit(0);
    EXPECT_EQ(child.err().size(), 1000 * 1000u);
}

TEST(Child, OfAnUnknownNameEnds)
{
    Child child("noSuchFunction");
    child.expectExit(127);
}
