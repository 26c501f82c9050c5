#include "brvUtils/ipc/CriticalSection.h"

#include "brvUtils/core/Errors.h"

namespace brvUtils {

CriticalSection::CriticalSection(ISemaphore* guarded, char const* name, double timeout)
    : semaphore(guarded)
{
    if (!semaphore->ask(timeout)) {
        throw SemaphoreSynchroError(name);
    }
}

CriticalSection::~CriticalSection()
{
    semaphore->free();
}

} // namespace brvUtils
