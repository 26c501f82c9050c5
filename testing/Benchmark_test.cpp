#include "testing/BenchmarkTable.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/Interleaved.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace brvTesting;

namespace {

void fill(BenchmarkTable& table)
{
    table.add({"put, 64 B", "ns", 15, {{"first", 30}, {"second", 20}}, 7.5});
    table.add({"\"attach\"", "ms", 2.5});
    table.add({"wait", "µs", 1234, {{"second", 2468}}});
}

} // namespace

TEST(BenchmarkTable, AlignsRatiosToTheBestPeerAndTheLimit)
{
    BenchmarkTable table(0, nullptr);
    fill(table);
    std::ostringstream text;
    table.print(text);
    EXPECT_EQ(text.str(), "           unit  ours  first  second  limit  ours/peer  ours/limit\n"
                          "put, 64 B    ns  15.0   30.0    20.0   7.50       0.75        2.00\n"
                          "\"attach\"     ms  2.50      -       -      -          -           -\n"
                          "wait         µs  1234      -    2468      -       0.50           -\n");
}

TEST(BenchmarkTable, WritesTheFileItIsToldTo)
{
    const TemporaryFolder folder;
    std::string program = "bench", flag = "--json", file = folder.file("rows.json");
    char* arguments[] = {program.data(), flag.data(), file.data()};
    CapturedOutput captured;
    BenchmarkTable table(3, arguments);
    fill(table);
    EXPECT_EQ(table.finish(), 0);
    EXPECT_EQ(folder.read("rows.json"), "[{\"row\": \"put, 64 B\", \"unit\": \"ns\", \"ours\": 15, \"peer\": 20, \"limit\": 7.5},\n"
                                        " {\"row\": \"\\\"attach\\\"\", \"unit\": \"ms\", \"ours\": 2.5, \"peer\": null, \"limit\": null},\n"
                                        " {\"row\": \"wait\", \"unit\": \"µs\", \"ours\": 1234, \"peer\": 2468, \"limit\": null}]\n");
}

BRV_CHILD(benchmark)
{
    Arguments words = arguments;
    words.insert(words.begin(), "bench");
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    double seconds = 5;
    BenchmarkTable(static_cast<int>(argv.size()), argv.data(), {{"--seconds", &seconds}});
    childSay("measuring " + std::to_string(static_cast<int>(seconds * 1000)));
    return 0;
}

TEST(BenchmarkTable, TakesTheNumbersItWasTold)
{
    const TemporaryFolder folder;
    Child("benchmark").expectLine("measuring 5000");
    Child("benchmark", {"--json", folder.file("rows.json"), "--seconds", "0.25"}).expectLine("measuring 250");
}

TEST(BenchmarkTable, RefusesWhatItCannotDoBeforeItMeasures)
{
    const TemporaryFolder folder;
    for (const Arguments& arguments : {Arguments{"--jason", "x"}, Arguments{"--json"}, Arguments{"--json", folder.file("none/rows.json")},
             Arguments{"--json", folder.file("rows.json"), "put"}, Arguments{"--seconds"}, Arguments{"--seconds", "0"}, Arguments{"--seconds", "1s"},
             Arguments{"--seconds", "inf"}}) {
        Child child("benchmark", arguments);
        child.expectExit(2);
        EXPECT_EQ(child.readLine(), "");
        EXPECT_NE(child.err(), "");
    }
}

TEST(Interleaved, TakesTurnsAndGivesMediansPerIteration)
{
    std::string order;
    const double spread[] = {4, 100, 2, 3, 1}; // Of the rounds; one was disturbed.
    const auto contender = [&](char name, double nanoseconds) {
        return Contender{{name}, [&order, &spread, name, nanoseconds, calls = 0](std::uint64_t iterations) mutable {
            if (iterations < 64) { // Still finding out.
                return nanoseconds * static_cast<double>(iterations);
            }
            order += name;
            return static_cast<double>(iterations) * nanoseconds * spread[calls++ % 5];
        }};
    };
    const auto medians = medianPerIteration({contender('a', 1), contender('b', 2)}, {5, std::chrono::nanoseconds(200)});
    EXPECT_EQ(order, "ababababab");
    ASSERT_EQ(medians.size(), 2u);
    EXPECT_DOUBLE_EQ(medians[0], 3);
    EXPECT_DOUBLE_EQ(medians[1], 6);
}
