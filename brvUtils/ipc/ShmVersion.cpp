#include "brvUtils/ipc/ShmVersion.h"

#include <cstring>

namespace brvUtils {

static_assert(sizeof(short) == 2);

ShmAble::~ShmAble() = default;

ShmVersion::ShmVersion(short layoutVersion)
    : version(layoutVersion)
{
}

int ShmVersion::getId()
{
    return -2;
}

int ShmVersion::getSize()
{
    return sizeof version;
}

void ShmVersion::put(void* destination)
{
    std::memcpy(destination, &version, sizeof version);
}

void ShmVersion::get(void* source)
{
    std::memcpy(&version, source, sizeof version);
}

short ShmVersion::getVersion() const
{
    return version;
}

} // namespace brvUtils
