#pragma once

#include "brvUtils/ipc/ISemaphore.h"

namespace brvUtils {

/// Holds a semaphore for the length of a scope.
class BRVUTILS_API CriticalSection
{
public:
    /// Takes the semaphore; blocks at most that long.
    /// \param semaphore not owned; must outlive the guard. Null is one that cannot be taken.
    /// \param name the text of the exception: tells which shared object was being locked.
    /// \param timeout in seconds, as for ISemaphore::ask.
    /// \throw SemaphoreSynchroError carrying `name` when the semaphore could not be taken; it is then not freed.
    CriticalSection(ISemaphore* semaphore, char const* name, double timeout);

    /// Frees the semaphore.
    ~CriticalSection();

    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

private:
    ISemaphore* semaphore_;
};

} // namespace brvUtils
