#include "brvUtils/ipc/CriticalSection.h"

#include "brvUtils/core/Errors.h"

namespace brvUtils {

CriticalSection::CriticalSection(ISemaphore* semaphore, char const* name, double timeout)
    : semaphore_(semaphore)
{
    if (semaphore == nullptr || !semaphore->ask(timeout)) {
        throw SemaphoreSynchroError(name);
    }
}

CriticalSection::~CriticalSection()
{
    semaphore_->free();
}

} // namespace brvUtils
