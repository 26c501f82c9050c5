#include "brvUtils/ipc/EventGroupWin32.h"
#include "brvUtils/ipc/EventWin32.h"
#include "testing/CapturedOutput.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace brvUtils;
using namespace brvTesting;

TEST(EventWin32, FollowsItsKindOfReset)
{
    const CapturedOutput captured;
    EventWin32 automatic(uniqueName().c_str(), false, true);
    EXPECT_TRUE(automatic.ask(0.0));
    EXPECT_FALSE(automatic.ask(0.01));
    EventWin32 manual(uniqueName().c_str(), true, false);
    EXPECT_TRUE(manual.set());
    EXPECT_TRUE(manual.ask(-1.0));
    EXPECT_TRUE(manual.ask(0.0));
    EXPECT_TRUE(manual.reset());
    EXPECT_FALSE(manual.ask(0.0));
    EXPECT_EQ(captured.out() + captured.err(), "") << "a time-out is silent";
}

TEST(EventWin32, ThatCouldNotBeMadeFailsAtEachUse)
{
    const std::string name(300, 'n');
    const CapturedOutput captured;
    EventWin32 event(name.c_str(), true, true);
    EXPECT_FALSE(event.set());
    EXPECT_FALSE(event.reset());
    EXPECT_FALSE(event.ask(0.0));
    EXPECT_EQ(event.getHandle(), nullptr);
    EXPECT_STREQ(event.eventName(), name.c_str());
    EXPECT_EQ(captured.out(), "ERROR opening/creating EventWin32: " + name + "\nError waiting EventWin32 " + name + " : 6\n");
}

class ForeignEvent : public IEvent
{
public:
    bool set() override { return true; }
    bool reset() override { return true; }
    bool ask(double) override { return true; }
    char const* eventName() const override { return "foreign"; }
};

TEST(EventGroupWin32, TakesItsOwnKindOnly)
{
    const std::unique_ptr<IEventGroup> group(EventGroupWin32::New());
    EXPECT_EQ(group->ask(-1.0, false), nullptr) << "an empty group does not wait";
    ForeignEvent foreign;
    EXPECT_FALSE(group->addEvent(&foreign));
    EXPECT_FALSE(group->addEvent(nullptr));
    EXPECT_EQ(group->eventCount(), 0u);
    EventWin32 event(uniqueName().c_str(), true, false);
    EXPECT_TRUE(group->addEvent(&event));
    EXPECT_TRUE(group->addEvent(&event));
    EXPECT_EQ(group->eventCount(), 2u);
}

TEST(EventGroupWin32, TellsWhichOneFired)
{
    EventWin32 first(uniqueName().c_str(), false, false);
    EventWin32 second(uniqueName().c_str(), true, false);
    const std::unique_ptr<IEventGroup> group(EventGroupWin32::New());
    group->addEvent(&first);
    group->addEvent(&second);
    const CapturedOutput captured;
    EXPECT_EQ(group->ask(0.01, false), nullptr);
    second.set();
    EXPECT_EQ(group->ask(-1.0, false), &second);
    EXPECT_EQ(group->ask(0.01, true), nullptr);
    first.set();
    EXPECT_EQ(group->ask(-1.0, true), &first);
    EXPECT_EQ(group->ask(0.0, true), nullptr) << "the signal of the auto-reset event was taken";
    EXPECT_EQ(captured.out() + captured.err(), "");
}

TEST(EventGroupWin32, OfMoreThan64FailsToWait)
{
    const std::unique_ptr<IEventGroup> group(EventGroupWin32::New());
    EventWin32 event(uniqueName().c_str(), true, true);
    for (int i = 0; i < 65; ++i) {
        group->addEvent(&event);
    }
    const CapturedOutput captured;
    EXPECT_EQ(group->ask(0.0, false), nullptr);
    EXPECT_EQ(captured.out(), "Error waiting Multiple EventWin32 : 87\n");
}

} // namespace
