#include "brvUtils/ipc/ShmWin32.h"

#include "brvUtils/os/Segment.h"
#include "brvUtils/startup/InstanceKey.h"

#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>

namespace brvUtils {

namespace {

std::string segmentName(char const* name, short version, bool withInstance)
{
    std::string result = withInstance ? buildKeyWithInstance(name) : name;
    if (version > 0) {
        result += "_" + std::to_string(version);
    }
    return result;
}

os::SegmentOpening open(const std::string& name, size_t size)
{
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        return {nullptr, false, os::error::invalidParameter};
    }
    return os::openSegment(name.c_str(), size);
}

} // namespace

ShmWin32::ShmWin32(char const* name, size_t size, short version, bool withInstance)
    : size_(size)
    , name_(segmentName(name, version, withInstance))
{
    const os::SegmentOpening opening = open(name_, size_);
    segment_ = opening.segment;
    created_ = opening.created;
    view_ = os::segmentAddress(segment_);
    if (segment_ == nullptr) {
        std::printf("ERROR code %d creating shared memory \"%s\"\n", static_cast<int>(opening.error), name_.c_str());
        std::printf("Failed to create shared memory \"%s\"", name_.c_str()); // no line end: kept for callers
    } else if (created_) {
        std::printf("Created shared memory \"%s\" successfully\n", name_.c_str());
    } else {
        std::printf("Opened existing shared memory \"%s\" successfully\n", name_.c_str());
    }
}

ShmWin32::~ShmWin32()
{
    os::closeSegment(segment_);
}

void* ShmWin32::getPtr() const
{
    return view_;
}

size_t ShmWin32::getSize() const
{
    return size_;
}

bool ShmWin32::isCreated() const
{
    return created_;
}

char const* ShmWin32::getName() const
{
    return name_.c_str();
}

size_t ShmWin32::getAlignment() const
{
    return 0;
}

bool ShmWin32::addPaddingBytes(size_t)
{
    return true;
}

IShm* ShmWin32::New(char const* name, size_t size, short version, bool withInstance)
{
    auto shm = std::make_unique<ShmWin32>(name, size, version, withInstance);
    return shm->getPtr() != nullptr ? shm.release() : nullptr;
}

} // namespace brvUtils
