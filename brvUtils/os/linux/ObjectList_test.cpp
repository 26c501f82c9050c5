#include "brvUtils/os/ObjectList.h"

#include "brvUtils/os/Event.h"
#include "brvUtils/os/Segment.h"
#include "brvUtils/os/Semaphore.h"
#include "brvUtils/os/linux/ObjectTable_test.h"
#include "brvUtils/os/linux/TableLayout.h"
#include "testing/Child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

const ListedObject* find(const ObjectList& list, const std::string& name)
{
    const auto found = std::find_if(list.objects.begin(), list.objects.end(), [&](const ListedObject& object) { return object.name == name; });
    return found != list.objects.end() ? &*found : nullptr;
}

/// Opens a semaphore, an event and a segment and takes the semaphore.
BRV_CHILD(listedHolder)
{
    Semaphore* semaphore = openSemaphore("semaphore", true).semaphore;
    waitSemaphore(semaphore, 0);
    openEvent("event", true, true);
    openSegment("segment", 10'000);
    childSay("ready");
    childHear();
    return 0;
}

TEST(ObjectList, FindsNothingWhereNobodyIsAndMakesNothing)
{
    const NameSpace space;
    EXPECT_EQ(listObjects().error, error::fileNotFound) << "no folder";
    EXPECT_FALSE(fs::exists(space.table().parent_path()));
    fs::create_directory(space.table().parent_path());
    fs::permissions(space.table().parent_path(), fs::perms(0770));
    EXPECT_EQ(listObjects().error, error::fileNotFound) << "no table";
    EXPECT_EQ(space.files(), 0);
    std::ofstream(space.table()).close();
    EXPECT_EQ(listObjects().error, error::fileNotFound) << "a maker that was killed before it began";
}

TEST(ObjectList, TellsWhatIsThereAndWhoHasIt)
{
    const NameSpace space;
    Child holder("listedHolder");
    holder.expectLine("ready");
    Semaphore* const own = openSemaphore("semaphore", true).semaphore;
    ObjectList list = listObjects();
    ASSERT_EQ(list.objects.size(), 3u);
    const ListedObject* object = find(list, "semaphore");
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->taken && object->holdersKnown);
    EXPECT_EQ(object->takerLife, TakerLife::running);
    EXPECT_EQ(object->taker.processId, holder.id());
    EXPECT_EQ(object->taker.program, "os_test");
    ASSERT_EQ(object->holders.size(), 2u);
    EXPECT_EQ(object->holders[0].processId + object->holders[1].processId, holder.id() + static_cast<std::uint32_t>(getpid()));
    object = find(list, "event");
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->set && object->manualReset);
    object = find(list, "segment");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->size, 10'000u);
    EXPECT_EQ(object->holders.size(), 1u);

    holder.kill();
    list = listObjects();
    ASSERT_EQ(list.objects.size(), 1u) << "only what somebody has open is alive";
    EXPECT_EQ(list.objects[0].takerLife, TakerLife::ended);
    EXPECT_EQ(list.objects[0].taker.processId, holder.id());
    EXPECT_EQ(list.leftOver, 2u);
    EXPECT_EQ(space.files(), 2) << "who looks sweeps nothing";
    closeSemaphore(own);
    EXPECT_EQ(space.files(), 0) << "who has looked keeps nothing alive";
}

TEST(ObjectList, SaysWhenTheTableCannotBeUsed)
{
    const NameSpace space;
    Child holder("listedHolder");
    holder.expectLine("ready");
    const auto size = fs::file_size(space.table());
    for (const std::uintmax_t rest : {std::uintmax_t{0}, std::uintmax_t{100}, size - 1}) {
        fs::resize_file(space.table(), rest);
        EXPECT_EQ(listObjects().error, error::invalidData) << rest;
    }
    fs::resize_file(space.table(), size);
    std::ofstream(space.table(), std::ios::in | std::ios::binary).write(tableMagic, sizeof tableMagic).put(99);
    EXPECT_EQ(listObjects().error, error::revisionMismatch);
    fs::remove(space.table());
    fs::create_directory(space.table());
    EXPECT_EQ(listObjects().error, error::invalidData) << "a folder in its place";
    holder.kill();
    fs::permissions(space.table().parent_path(), fs::perms(0777));
    EXPECT_EQ(listObjects().error, error::accessDenied);
}

TEST(ObjectList, AnyBytesInATableAreSurvived)
{
    const NameSpace space;
    Child holder("listedHolder");
    holder.expectLine("ready");
    std::fstream file(space.table(), std::ios::in | std::ios::out | std::ios::binary);
    std::uint32_t random = 1;
    for (int round = 0; round < 150; ++round) {
        // Behind magic and version: numbers of slots, hashes, process records, slots.
        const std::size_t places[] = {12, offsetof(Table, index), offsetof(Table, processes) + 64 * (minimumTicket % processCapacity), offsetof(Table, slots)};
        random = random * 1664525u + 1013904223u;
        file.seekp(static_cast<std::streamoff>(places[round % 4] + (random >> 16) % (round % 4 == 0 ? 40u : 380u)));
        file.put(static_cast<char>(random >> 8));
        file.flush();
        const ObjectList list = listObjects();
        EXPECT_LE(list.objects.size(), slotCapacity);
    }
}

/// Opens and closes under many names as fast as it can; says how many times something was not as it must be.
BRV_CHILD(busyOpener)
{
    int wrong = 0;
    childSay("ready");
    for (int i = 0; i < 1000; ++i) {
        const std::string name = arguments[0] + std::to_string(i % 50);
        Segment* const segment = openSegment((name + "m").c_str(), 5000).segment;
        Semaphore* const semaphore = openSemaphore(name.c_str(), true).semaphore;
        if (segment == nullptr || static_cast<char*>(segmentAddress(segment))[4999] != 0
            || waitSemaphore(semaphore, 0).status != WaitStatus::signalled || releaseSemaphore(semaphore) != error::none) {
            ++wrong;
        }
        closeSemaphore(semaphore);
        closeSegment(segment);
    }
    childSay(std::to_string(wrong));
    return 0;
}

TEST(ObjectList, SeesOnlyWholeObjectsWhileOthersOpenAndClose)
{
    const NameSpace space;
    Child first("busyOpener", {"a"}), second("busyOpener", {"bb"});
    ASSERT_TRUE(first.expectLine("ready") && second.expectLine("ready"));
    std::atomic<bool> done{false};
    std::thread looker([&] {
        while (!done) {
            const ObjectList list = listObjects();
            ASSERT_TRUE(list.error == error::none || list.error == error::fileNotFound) << list.error;
            for (const ListedObject& object : list.objects) {
                ASSERT_EQ(object.kind == ObjectKind::segment, object.name.back() == 'm') << object.name;
                ASSERT_TRUE(object.name[0] == 'a' || object.name.substr(0, 2) == "bb") << object.name;
                ASSERT_TRUE(object.takerLife != TakerLife::ended) << object.name;
            }
            readSegment("a0m", [](void*, const char* bytes, std::size_t) { return bytes[0] == 0; }, nullptr);
        }
    });
    EXPECT_TRUE(first.expectLine("0") && second.expectLine("0"));
    done = true;
    looker.join();
    first.expectExit(0);
    second.expectExit(0);
    EXPECT_EQ(space.files(), 0);
}

BRV_CHILD(looksAsSomebody)
{
    const auto somebody = static_cast<uid_t>(std::stoul(arguments[0]));
    if (setresgid(somebody, somebody, somebody) != 0 || setresuid(somebody, somebody, somebody) != 0) {
        return 9;
    }
    const ObjectList list = listObjects();
    childSay(std::to_string(list.error));
    childSay(list.objects.empty() ? "nothing" : list.objects[0].holdersKnown ? "known" : "unknown");
    return 0;
}

TEST(ObjectList, ShowsTheObjectsOfAGroupAlsoWhereItsProcessesMayNotBeLookedInto)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "takes the rights of several users, which only root can";
    }
    const NameSpace space;
    const auto somebody = 1'000'000'000 + static_cast<uid_t>(getpid());
    const std::string user = std::to_string(somebody);
    Semaphore* const own = openSemaphore("own", true).semaphore;
    Child stranger("looksAsSomebody", {user});
    EXPECT_TRUE(stranger.expectLine(std::to_string(error::accessDenied)) && stranger.expectLine("nothing"));
    EXPECT_EQ(chown(space.table().parent_path().c_str(), 0, somebody) + chown(space.table().c_str(), 0, somebody), 0);
    fs::permissions(space.table().parent_path(), fs::perms(02770));
    Child member("looksAsSomebody", {user});
    EXPECT_TRUE(member.expectLine("0") && member.expectLine("unknown"));
    closeSemaphore(own);
}

TEST(ObjectList, ReadsSegmentsAndSaysWhichAreNotThere)
{
    const NameSpace space;
    std::size_t total = 0;
    const auto count = [](void* context, const char*, std::size_t bytes) {
        *static_cast<std::size_t*>(context) += bytes;
        return true;
    };
    EXPECT_EQ(readSegment("large", count, &total), error::fileNotFound);
    Segment* const large = openSegment("large", 1'000'001).segment;
    Semaphore* const other = openSemaphore("other", true).semaphore;
    EXPECT_EQ(readSegment("large", count, &total), error::none);
    EXPECT_EQ(total, 1'000'001u);
    EXPECT_EQ(readSegment("other", count, &total), error::fileNotFound);
    EXPECT_EQ(readSegment("", count, &total), error::invalidParameter);
    closeSegment(large);
    closeSemaphore(other);
}

} // namespace
