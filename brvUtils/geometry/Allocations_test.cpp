#include "brvUtils/geometry/CoordinateConventions.h"
#include "brvUtils/geometry/ReferenceFrames.h"
#include "brvUtils/geometry/Segments.h"
#include "brvUtils/geometry/Vectors.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

int allocations = 0;

} // namespace

// Where a program's own operators serve its shared libraries, too, these count what the library allocates.
void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace brvUtils {
namespace {

TEST(Allocations, AreNotNeeded)
{
    RelativePosition outer(RelativePosition::getGlobalBase(), {1.0, 2.0, 3.0, 0.1, 0.2, 0.3});
    Base base(&outer);
    RelativePosition inner(&base, {1.0, 2.0, 3.0, 0.1, 0.2, 0.3});
    brv::Vector2 result;
    brv::Vector3 angles(0.1, 0.2, 0.3);
    brv::Mark mark;
    double one, other;

    const int before = allocations;
    intersectionOfSegmentsParametricCoords(result, {0.0, 0.0}, {1.0, -1.0}, {2.0, 0.0}, {1.0, 1.0}, one, other);
    squareDistanceSegmentToSegment(result, {0.0, 0.0}, {1.0, -1.0}, {2.0, 0.0}, {1.0, 1.0});
    abscissaAndGap({0.0, 0.0}, {1.0, -1.0}, {2.0, 0.0}, one, other);
    applyAngles({1.0, 2.0, 3.0}, angles);
    globalToLocal({1.0, 2.0, 3.0}, angles);
    FromVeloraToOrvik(inner.getAbsolutePlace(), mark, 1.0, 2.0);
    base.resolve({1.0, 2.0, 3.0});
    EXPECT_EQ(allocations, before);
}

} // namespace
} // namespace brvUtils
