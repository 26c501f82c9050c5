#pragma once

#include "brvUtils/ipc/ISemaphore.h"

#include <string>

namespace brvUtils {

namespace os {
struct Semaphore;
}

class Lock;

/// A semaphore of the operating system, shared by name between processes.
///
/// It lives while any process has it open; the process that makes it decides whether it starts free. Failing to make it
/// throws nothing: the object then has no handle, and each operation fails. May be used from several threads at once.
///
/// A copy carries the same handle, and each copy closes it: copies are of use only while one of them is kept alive.
class BRVUTILS_API SemaphoreWin32 : public ISemaphore
{
public:
    /// Opens the semaphore of that name, or makes it.
    /// On failure prints "Creating semaphore failed : <name>" to the standard output.
    /// \param name 1 to 259 bytes, a backslash only in a leading `Local\` or `Global\`. Null: a semaphore of this
    ///        process alone, called "unnamed" in messages.
    /// \param initiallyFree its state when this call makes it.
    /// \param withInstance whether the name is qualified by the instance of the suite (buildKeyWithInstance).
    SemaphoreWin32(char const* name, bool initiallyFree, bool withInstance);
    /// Carries the same handle, see above.
    SemaphoreWin32(const SemaphoreWin32&) = default;
    /// The same. The handle that it had is not closed.
    SemaphoreWin32& operator=(const SemaphoreWin32&) = default;

    /// Closes the handle. Frees nothing.
    ~SemaphoreWin32() override;

    /// As ISemaphore::ask. A failed wait, and a time-out other than that of a poll, writes a line to the error stream.
    bool ask(double timeout) override;

    /// As ISemaphore::free; prints nothing.
    bool free() override;

    /// How askAsLock ended.
    enum class LockOutcome {
        taken,
        refused, ///< Timed out or failed; reported as by ask.
        takerDied ///< Whoever held it has ended. It is free now, and what it guards may be half written.
    };

    /// As ask, for a semaphore that serves as a lock: one that its taker left behind when its process ended is freed.
    /// An unlimited wait looks for that once a second. On Windows, where the system does not tell, it is the same as ask.
    /// \param timeout in seconds. \param deadTaker where a description of the ended process goes, when there was one.
    LockOutcome askAsLock(double timeout, std::string& deadTaker);

    /// Makes one as the constructor does; the caller owns it. Null when memory is short.
    static ISemaphore* New(char const* name, bool initiallyFree, bool withInstance);

private:
    friend class Lock;

    os::Semaphore* handle_;
    std::string name_; ///< As given, for messages.
};

} // namespace brvUtils
