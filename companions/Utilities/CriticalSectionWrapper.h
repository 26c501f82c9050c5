#pragma once

#include <mutex>

namespace Utilities {

/// A lock among the threads of one process that its owner may take again: it is free when it was given back as often as it
/// was taken. `std::lock_guard<CriticalSectionWrapper>` holds one for a scope. Any thread may take it; it must be free when
/// it is destroyed.
class CriticalSectionWrapper
{
public:
    CriticalSectionWrapper() = default;
    CriticalSectionWrapper(const CriticalSectionWrapper&) = delete;
    CriticalSectionWrapper& operator=(const CriticalSectionWrapper&) = delete;

    /// Waits as long as another thread owns it.
    void lock() { mutex_.lock(); }
    /// Takes it without waiting; false when another thread owns it.
    bool tryLock() { return mutex_.try_lock(); }
    /// By the owner alone, once for each time it was taken.
    void unlock() { mutex_.unlock(); }

private:
    std::recursive_mutex mutex_;
};

} // namespace Utilities
