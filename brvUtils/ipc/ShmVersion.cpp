#include "brvUtils/ipc/ShmVersion.h"

#include <cstring>

namespace brvUtils {

static_assert(sizeof(short) == 2);

ShmAble::~ShmAble() = default;

ShmVersion::ShmVersion(short version)
    : version_(version)
{
}

int ShmVersion::getId()
{
    return -2;
}

int ShmVersion::getSize()
{
    return sizeof version_;
}

void ShmVersion::put(void* destination)
{
    std::memcpy(destination, &version_, sizeof version_);
}

void ShmVersion::get(void* source)
{
    std::memcpy(&version_, source, sizeof version_);
}

short ShmVersion::getVersion() const
{
    return version_;
}

} // namespace brvUtils
