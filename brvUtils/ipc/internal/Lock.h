#pragma once

#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/os/Semaphore.h"

#include <memory>
#include <string>
#include <typeinfo>

namespace brvUtils {

/// An owned semaphore in its role as a lock of the library: where its kind can tell that the process that took it has
/// ended, it is freed.
class Lock
{
public:
    using Outcome = SemaphoreWin32::LockOutcome;

    Lock() = default;

    /// \param semaphore may be null: each attempt is then refused.
    explicit Lock(ISemaphore* semaphore)
        : semaphore_(semaphore)
        // A class derived from SemaphoreWin32 may wait in a way of its own.
        , known_(semaphore != nullptr && typeid(*semaphore) == typeid(SemaphoreWin32) ? static_cast<SemaphoreWin32*>(semaphore) : nullptr)
        , handle_(known_ != nullptr ? known_->handle_ : nullptr)
    {
        os::useAsLock(handle_);
    }

    /// Whether there is a semaphore of the system behind it.
    bool isOpen() const { return handle_ != nullptr; }

    ISemaphore* semaphore() const { return semaphore_.get(); }

    /// Takes it if that is possible at once without a word; what other kinds would say to that is not known.
    bool tryTake() { return handle_ != nullptr && os::waitSemaphore(handle_, 0).status == os::WaitStatus::signalled; }

    /// \param timeout in seconds, as for ISemaphore::ask.
    /// \param deadTaker where a description of the dead process goes, when there was one.
    Outcome take(double timeout, std::string& deadTaker)
    {
        if (known_ != nullptr) {
            return known_->askAsLock(timeout, deadTaker);
        }
        return semaphore_ != nullptr && semaphore_->ask(timeout) ? Outcome::taken : Outcome::refused;
    }

    bool free()
    {
        if (handle_ != nullptr) {
            return os::releaseSemaphore(handle_) == os::error::none;
        }
        return semaphore_ != nullptr && semaphore_->free();
    }

private:
    std::unique_ptr<ISemaphore> semaphore_;
    SemaphoreWin32* known_ = nullptr; ///< The same, when it is exactly of this class.
    os::Semaphore* handle_ = nullptr; ///< And its handle: the shortest way to it.
};

/// Frees a lock that was taken, at the end of the scope, also when a part's own code throws.
class Unlock
{
public:
    explicit Unlock(Lock& lock)
        : lock_(lock)
    {
    }
    ~Unlock() { lock_.free(); }
    Unlock(const Unlock&) = delete;
    Unlock& operator=(const Unlock&) = delete;

private:
    Lock& lock_;
};

} // namespace brvUtils
