#pragma once

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

/// The state of a named object is one 64-bit word; the kernel waits on its low half.
namespace brvUtils::os {

using StateWord = std::atomic<std::uint64_t>;
static_assert(StateWord::is_always_lock_free && sizeof(StateWord) == 8);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the half that the kernel sees is the first one");

inline std::uint32_t* futexOf(StateWord& word)
{
    return reinterpret_cast<std::uint32_t*>(&word);
}

/// Sleeps while the low half of the word is `expected`. False when the deadline (monotonic; null: none) has passed.
inline bool futexWait(StateWord& word, std::uint32_t expected, const timespec* deadline)
{
    return syscall(SYS_futex, futexOf(word), FUTEX_WAIT_BITSET, expected, deadline, nullptr, FUTEX_BITSET_MATCH_ANY) == 0 || errno != ETIMEDOUT;
}

inline void futexWakeAll(StateWord& word)
{
    syscall(SYS_futex, futexOf(word), FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

/// Changes the low half and wakes everybody who sleeps on it, in one call: a process that is killed has done both or
/// neither, so that no waiter sleeps on beside a free object. All are woken because a woken one may be killed too.
/// \param operation FUTEX_OP_SET or FUTEX_OP_OR. \param argument 0 to 2047.
inline void futexChangeAndWakeAll(StateWord& word, int operation, int argument)
{
    // The kernel's store carries no meaning for the memory model; this orders what the caller wrote before it.
    word.fetch_or(0, std::memory_order_release);
    syscall(SYS_futex, futexOf(word), FUTEX_WAKE_OP, INT_MAX, static_cast<unsigned long>(0), futexOf(word),
        FUTEX_OP(operation, argument, FUTEX_OP_CMP_LT, 0) & 0xFFFFFFFFu);
}

} // namespace brvUtils::os
