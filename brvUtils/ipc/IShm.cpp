#include "brvUtils/ipc/IShm.h"

#include <cstring>

namespace brvUtils {

IShm::~IShm() = default;

void IShm::describePart(int, size_t, size_t, ISemaphore*)
{
}

bool IShm::beforeRead(int)
{
    return true;
}

void IShm::afterWrite(int)
{
}

void IShm::setValue(void* source)
{
    std::memcpy(getPtr(), source, getSize());
}

void IShm::getValue(void* destination)
{
    std::memcpy(destination, getPtr(), getSize());
}

} // namespace brvUtils
