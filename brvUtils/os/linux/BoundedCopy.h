#pragma once

#include "brvUtils/os/linux/Futex.h"

namespace brvUtils::os {

/// What a copy of the process and the thread that waits for it tell each other; in memory that both share.
struct CopyNotes
{
    StateWord mayStart{0};
    StateWord pulse{0};
    StateWord result{0}; ///< 0 until the work has ended; then 1 for failure, 2 for success.
    std::atomic<bool> leftFile{false}; ///< For the work: what it made has to be taken away if it does not come to its end.

    /// To be called now and then by work that takes long.
    void live() { pulse.fetch_add(1); }
};

/// Work for a copy of this process. What it changes in memory nobody else sees.
using CopyWork = bool (*)(void* argument, CopyNotes& notes);

/// How long a copy may give no sign of life.
constexpr int copyPatience = 30'000; // ms

/// Does the work in a copy of this process, which has one thread, no signals and no open files but the standard streams, and
/// which may trace this process. So it can fail in any way, and hang, without harm: it is killed when it gives no sign of
/// life in time, and when this thread ends. Takes nothing from the heap and needs no free descriptor.
/// \param undo is called when the copy did not come to its end and has set `leftFile`. May be null.
/// \return whether the work returned true.
bool runInCopy(CopyWork work, void* argument, void (*undo)(void* argument), int patience = copyPatience) noexcept;

} // namespace brvUtils::os
