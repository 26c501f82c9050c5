#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

/// A binary semaphore, free or taken, used as a lock between processes.
///
/// It is no mutex: whoever took it, any thread or process may free it, and the end of its taker frees nothing. Objects
/// may be used from several threads at once.
class BRVUTILS_API ISemaphore
{
public:
    virtual ~ISemaphore();

    /// Takes the semaphore.
    /// \param timeout in seconds: negative waits without limit, 0 tests and returns at once, anything else is cut to whole
    ///        milliseconds.
    /// \return whether it was taken by this call.
    virtual bool ask(double timeout) = 0;

    /// Gives the semaphore back.
    /// \return false when it was free already, or when there is none.
    virtual bool free() = 0;
};

/// Makes or opens a semaphore; the caller owns it. Null when memory is short.
using SemaphoreFactory = ISemaphore* (*)(char const* name, bool initiallyFree, bool withInstance);

} // namespace brvUtils
