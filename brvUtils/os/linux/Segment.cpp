#include "brvUtils/os/Segment.h"

#include "brvUtils/os/linux/ObjectTable.h"

namespace brvUtils::os {

SegmentOpening openSegment(const char* name, std::size_t size) noexcept
{
    constexpr std::size_t addressable = std::size_t{1} << 47;
    if (size == 0) {
        return {nullptr, false, error::invalidParameter};
    }
    if (size >= addressable) {
        return {nullptr, false, error::diskFull};
    }
    ObjectRequest request{Kind::segment};
    request.size = size;
    const ObjectOpening opening = ObjectTable::instance().open(name, request);
    return {as<Segment>(opening.handle), opening.created, opening.error};
}

void* segmentAddress(const Segment* segment) noexcept
{
    const Handle* handle = reinterpret_cast<const Handle*>(segment);
    return handle != nullptr && handle->kind == Kind::segment ? handle->view : nullptr;
}

ErrorCode closeSegment(Segment* segment) noexcept
{
    return ObjectTable::instance().close(handleOf(segment), Kind::segment);
}

} // namespace brvUtils::os
