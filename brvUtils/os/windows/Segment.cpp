#include "brvUtils/os/Segment.h"

#include "brvUtils/os/windows/Objects.h"

#include <new>

namespace brvUtils::os {

struct Segment
{
    HANDLE mapping;
    void* view;
};

namespace {

/// What the view holds: whole pages, as many as the segment was made with.
std::size_t sizeOf(const void* view)
{
    MEMORY_BASIC_INFORMATION region{};
    return VirtualQuery(view, &region, sizeof region) != 0 ? region.RegionSize : 0;
}

} // namespace

SegmentOpening openSegment(const char* name, std::size_t size) noexcept
{
    if (name == nullptr || *name == '\0' || size == 0) {
        return {nullptr, false, error::invalidParameter};
    }
    auto* segment = new (std::nothrow) Segment{};
    if (segment == nullptr) {
        return {nullptr, false, error::notEnoughMemory};
    }
    SetLastError(0);
    const auto bytes = static_cast<std::uint64_t>(size);
    segment->mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, static_cast<DWORD>(bytes >> 32),
        static_cast<DWORD>(bytes), name);
    ErrorCode code = GetLastError();
    const bool created = code != ERROR_ALREADY_EXISTS;
    if (segment->mapping != nullptr) {
        segment->view = MapViewOfFile(segment->mapping, FILE_MAP_WRITE, 0, 0, 0);
        code = segment->view == nullptr ? GetLastError() : sizeOf(segment->view) < size ? error::invalidParameter : error::none;
    }
    if (code != error::none) {
        closeSegment(segment);
        return {nullptr, false, code};
    }
    return {segment, created, error::none};
}

void* segmentAddress(const Segment* segment) noexcept
{
    return segment != nullptr ? segment->view : nullptr;
}

ErrorCode closeSegment(Segment* segment) noexcept
{
    if (segment == nullptr) {
        return error::invalidHandle;
    }
    if (segment->view != nullptr) {
        UnmapViewOfFile(segment->view);
    }
    if (segment->mapping != nullptr) {
        CloseHandle(segment->mapping);
    }
    delete segment;
    return error::none;
}

} // namespace brvUtils::os
