#include "brvUtils/ipc/NamedObjects.h"

#include "brvUtils/ipc/CompositeShm.h"
#include "brvUtils/ipc/EventWin32.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmAble.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using namespace brvUtils;
using namespace brvTesting;
using Role = NamedObject::Role;
using Taker = NamedObject::Taker;

std::optional<NamedObject> find(const std::string& name, Role role = Role::other)
{
    const NamedObjects seen = lookAtNamedObjects();
    const auto found = std::find_if(seen.objects.begin(), seen.objects.end(), [&](const NamedObject& object) {
        return object.name.find(name) != std::string::npos && object.role == role;
    });
    return found != seen.objects.end() ? std::optional(*found) : std::nullopt;
}

class Number : public ShmAble
{
public:
    int getId() override { return 7; }
    int getSize() override { return sizeof value; }
    void put(void* destination) override { std::memcpy(destination, &value, sizeof value); }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }

    int value = 0;
};

class Composite : public CompositeShm
{
public:
    explicit Composite(const std::string& name)
        : CompositeShm(ShmWin32::New, SemaphoreWin32::New, name.c_str(), sizeof(int), 513, 2)
    {
        addPart(number);
    }
    bool write(int value)
    {
        number.value = value;
        return put(number, 30);
    }
    bool hold() { return getAccess(number, 30); }
    std::string name() const { return shmName(); }

    Number number;
};

BRV_CHILD(heldComposite)
{
    Composite composite(arguments[0]);
    SemaphoreWin32 plain((arguments[0] + " plain").c_str(), true, true);
    childSay(composite.hold() && plain.ask(0) ? "held" : "failed");
    childHear();
    return 0;
}

TEST(NamedObjects, TellsStatesOfSemaphoresAndEvents)
{
    const std::string name = uniqueName();
    EXPECT_FALSE(find(name));
    SemaphoreWin32 semaphore((name + "s").c_str(), true, false);
    EventWin32 manual((name + "m").c_str(), true, false);
    EventWin32 automatic((name + "a").c_str(), false, true);
    ASSERT_TRUE(find(name + "s") && find(name + "m") && find(name + "a"));
    EXPECT_TRUE(find(name + "s")->stateKnown && !find(name + "s")->taken);
    EXPECT_TRUE(find(name + "m")->manualReset && !find(name + "m")->set);
    EXPECT_TRUE(!find(name + "a")->manualReset && find(name + "a")->set) << "looking takes no signal";
    EXPECT_TRUE(find(name + "a")->set);

    const auto before = find(name + "s");
    EXPECT_EQ(changesBetween(*before, *find(name + "s")), 0u);
    semaphore.ask(0);
    manual.set();
    EXPECT_TRUE(find(name + "s")->taken && find(name + "m")->set);
    EXPECT_EQ(changesBetween(*before, *find(name + "s")), 1u);
    EXPECT_EQ(find(name + "s")->taker, takersAreKnown() ? Taker::running : Taker::unknown);
    EXPECT_EQ(find(name + "s")->holders.size(), takersAreKnown() ? 1u : 0u);
    EXPECT_FALSE(freeDeadLock(*find(name + "s")).freed);
    EXPECT_TRUE(find(name + "s")->taken);
}

TEST(NamedObjects, CountsResetsThatNobodySaw)
{
    const std::string name = uniqueName();
    EventWin32 event(name.c_str(), true, false);
    const auto before = find(name);
    for (int i = 0; i < 3; ++i) {
        event.set();
        event.reset();
    }
    EXPECT_EQ(changesBetween(*before, *find(name)), takersAreKnown() ? 6u : 0u);
}

TEST(NamedObjects, KnowsTheLocksOfACompositeSegmentByTheirNames)
{
    // The instance is read once per process.
    const std::string name = uniqueName();
    Child child("heldComposite", {name}, {{"STUDIO_INSTANCE", "I2"}});
    child.awaitLine("held");
    const NamedObjects seen = lookAtNamedObjects(false);
    int locks = 0;
    std::string segment;
    for (const NamedObject& object : seen.objects) {
        if (object.name.find(name) == std::string::npos) {
            continue;
        }
        EXPECT_TRUE(belongsToInstance(object, "I2") && belongsToInstance(object, ""));
        EXPECT_FALSE(belongsToInstance(object, "I3"));
        if (object.role == Role::segment) {
            segment = object.name;
            EXPECT_GE(object.size, sizeof(int) + 2);
        }
    }
    EXPECT_EQ(segment.substr(0, 2 + name.size() + 4), "I2" + name + "_513") << segment;
    for (const NamedObject& object : seen.objects) {
        if (object.role == Role::partLock && object.segment == segment) {
            ++locks;
            EXPECT_TRUE(object.part == -2 || object.part == 7) << object.part;
            EXPECT_EQ(object.taken, object.part == 7);
        }
    }
    EXPECT_EQ(locks, 2);
    EXPECT_EQ(find(name + " plain").has_value(), true);
    SegmentGlance glance = glanceAtSegment(segment);
    EXPECT_TRUE(glance.seen);
    EXPECT_EQ(glance.firstTwoBytes, 513);
    EXPECT_FALSE(glanceAtSegment(name).seen);
}

TEST(NamedObjects, FingerprintsChangeWithTheBytes)
{
    const CapturedOutput quiet;
    const std::string name = uniqueName();
    Composite composite(name);
    const SegmentGlance before = glanceAtSegment(composite.name());
    EXPECT_EQ(glanceAtSegment(composite.name()).fingerprint, before.fingerprint);
    EXPECT_TRUE(composite.write(4711));
    EXPECT_NE(glanceAtSegment(composite.name()).fingerprint, before.fingerprint);
}

TEST(NamedObjects, FreesThePartOfADeadProcessOnceAndNothingElse)
{
    const std::string name = uniqueName();
    const CapturedOutput captured;
    Composite composite(name);
    SemaphoreWin32 plain((name + " plain").c_str(), true, true);
    Child child("heldComposite", {name});
    child.awaitLine("held");
    std::optional<NamedObject> part;
    const auto look = [&] {
        part.reset();
        for (const NamedObject& object : lookAtNamedObjects().objects) {
            if (object.role == Role::partLock && object.segment == composite.name() && object.part == 7) {
                part = object;
            }
        }
        return part.has_value();
    };
    ASSERT_TRUE(look());
    EXPECT_TRUE(part->taken && !part->isDeadLock());
    EXPECT_FALSE(freeDeadLock(*part).freed) << "its taker runs";
    child.kill();
    ASSERT_TRUE(look());
    EXPECT_EQ(part->isDeadLock(), takersAreKnown());
    const LockRepair repair = freeDeadLock(*part);
    EXPECT_EQ(repair.freed, takersAreKnown());
    EXPECT_FALSE(freeDeadLock(*part).freed);
    if (takersAreKnown()) {
        EXPECT_EQ(repair.taker.process, child.id());
        EXPECT_EQ(repair.taker.program, "ipc_test");
        EXPECT_TRUE(composite.write(1)) << "nothing is lost of the next exchange";
    }
    ASSERT_TRUE(find(name + " plain"));
    EXPECT_FALSE(freeDeadLock(*find(name + " plain")).freed);
    EXPECT_TRUE(find(name + " plain")->taken) << "that one is not the library's";
}

} // namespace
