#include "brvUtils/os/Segment.h"

#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

TEST(Segment, IsZeroWhenCreatedAndSharedWhenOpened)
{
    const std::string name = uniqueName();
    constexpr std::size_t size = 100'000;
    const SegmentOpening first = openSegment(name.c_str(), size);
    ASSERT_TRUE(first.created);
    auto* bytes = static_cast<char*>(segmentAddress(first.segment));
    EXPECT_EQ(std::string(bytes, size), std::string(size, '\0'));
    bytes[size - 1] = 'x';
    const SegmentOpening second = openSegment(name.c_str(), 10);
    EXPECT_FALSE(second.created);
    EXPECT_EQ(static_cast<char*>(segmentAddress(second.segment))[size - 1], 'x');
    closeSegment(first.segment);
    closeSegment(second.segment);
    const SegmentOpening later = openSegment(name.c_str(), size);
    EXPECT_TRUE(later.created);
    EXPECT_EQ(static_cast<char*>(segmentAddress(later.segment))[size - 1], '\0');
    closeSegment(later.segment);
}

TEST(Segment, ImpossibleSizesFail)
{
    const std::string name = uniqueName();
    EXPECT_EQ(openSegment(name.c_str(), 0).error, error::invalidParameter);
    EXPECT_EQ(openSegment(nullptr, 10).error, error::invalidParameter);
    const SegmentOpening tooMuch = openSegment(name.c_str(), std::size_t{1} << 46);
    EXPECT_EQ(tooMuch.segment, nullptr);
    EXPECT_NE(tooMuch.error, error::none);
    EXPECT_NE(openSegment(name.c_str(), ~std::size_t{0}).error, error::none);

    Segment* segment = openSegment(name.c_str(), 4096).segment;
    ASSERT_NE(segment, nullptr) << "a failed creation leaves nothing behind";
    EXPECT_EQ(openSegment(name.c_str(), 4097).error, error::invalidParameter);
    EXPECT_EQ(segmentAddress(nullptr), nullptr);
    EXPECT_EQ(closeSegment(nullptr), error::invalidHandle);
    closeSegment(segment);
}

BRV_CHILD(segmentWriter)
{
    const SegmentOpening opening = openSegment(arguments[0].c_str(), 5000);
    std::strcpy(static_cast<char*>(segmentAddress(opening.segment)) + 4500, "from the child");
    childSay(opening.created ? "created" : "opened");
    if (childHear().value_or("") == "abort") {
        std::abort();
    }
    return 0;
}

TEST(Segment, LivesAsLongAsAProcessHasIt)
{
    for (const std::string end : {"exit", "abort", "kill"}) {
        const std::string name = uniqueName();
        Child child("segmentWriter", {name});
        child.expectLine("created");
        const SegmentOpening kept = openSegment(name.c_str(), 5000);
        if (end == "kill") {
            child.kill();
        } else {
            child.send(end);
            child.waitForEnd();
        }
        EXPECT_STREQ(static_cast<char*>(segmentAddress(kept.segment)) + 4500, "from the child") << end;
        Child next("segmentWriter", {name});
        next.expectLine("opened");
        closeSegment(kept.segment);
        next.kill();
        const SegmentOpening fresh = openSegment(name.c_str(), 5000);
        EXPECT_TRUE(fresh.created) << end;
        EXPECT_STREQ(static_cast<char*>(segmentAddress(fresh.segment)) + 4500, "") << end;
        closeSegment(fresh.segment);
    }
}

} // namespace
