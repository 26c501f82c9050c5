#include "brvUtils/os/linux/BoundedCopy.h"

#include "brvUtils/os/linux/Deadline.h"

#include <csignal>
#include <new>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#ifndef SYS_close_range
#define SYS_close_range 436
#endif

namespace brvUtils::os {
namespace {

constexpr std::uint64_t failed = 1;
constexpr std::uint64_t succeeded = 2;
constexpr Milliseconds deathCheck = 50;

[[noreturn]] void runCopy(CopyWork work, void* argument, CopyNotes& notes, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    syscall(SYS_close_range, 3U, ~0U, 0U); // a process that has used up its descriptors is dumped as well
    while (notes.mayStart.load() == 0 && getppid() == parent) {
        const Deadline deadline(monotonicNanoseconds(), deathCheck);
        futexWait(notes.mayStart, 0, deadline.moment());
    }
    notes.result.store(work(argument, notes) ? succeeded : failed);
    futexWakeAll(notes.result);
    syscall(SYS_exit_group, 0);
    __builtin_unreachable();
}

/// Whether the copy has said how its work ended; if it has not, it is dead or silent for too long.
bool waitForResult(pid_t copy, CopyNotes& notes, int patience, bool& dead)
{
    std::uint64_t pulse = notes.pulse.load();
    Deadline silence(monotonicNanoseconds(), patience);
    while (notes.result.load() == 0) {
        const Deadline check(monotonicNanoseconds(), deathCheck);
        futexWait(notes.result, 0, check.moment());
        if (notes.result.load() != 0) {
            break;
        }
        dead = waitpid(copy, nullptr, __WALL | WNOHANG) != 0;
        if (dead || silence.passed()) {
            return notes.result.load() != 0;
        }
        if (const std::uint64_t now = notes.pulse.load(); now != pulse) {
            pulse = now;
            silence = Deadline(monotonicNanoseconds(), patience);
        }
    }
    return true;
}

/// The copy ends at once, unless the kernel holds it in a call: then it is left to the kernel.
void reap(pid_t copy)
{
    kill(copy, SIGKILL);
    for (int attempt = 0; attempt < 100 && waitpid(copy, nullptr, __WALL | WNOHANG) == 0; ++attempt) {
        const timespec pause{0, 1'000'000};
        nanosleep(&pause, nullptr);
    }
}

/// Shared memory for the notes. Its first page is given back at once: what lies at the start of a file (of which the kernel
/// makes one here) would be a module to who dumps this process.
class NotesMemory
{
public:
    NotesMemory()
        : base_(static_cast<char*>(mmap(nullptr, 2 * page_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
        if (valid()) {
            munmap(base_, page_);
        }
    }
    ~NotesMemory()
    {
        if (valid()) {
            munmap(base_ + page_, page_);
        }
    }
    NotesMemory(const NotesMemory&) = delete;
    NotesMemory& operator=(const NotesMemory&) = delete;

    bool valid() const { return base_ != MAP_FAILED; }
    void* get() const { return base_ + page_; }

private:
    std::size_t page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    char* base_;
};

} // namespace

bool runInCopy(CopyWork work, void* argument, void (*undo)(void* argument), int patience) noexcept
{
    const NotesMemory memory;
    if (!memory.valid()) {
        return false;
    }
    auto& notes = *new (memory.get()) CopyNotes;
    const pid_t own = getpid();
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
    // No signal to this process when it ends, which others might wait for; no memory shared; a copy of this stack.
    const auto copy = static_cast<pid_t>(syscall(SYS_clone, CLONE_UNTRACED, nullptr, nullptr, nullptr, nullptr));
    if (copy == 0) {
        runCopy(work, argument, notes, own);
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    bool success = false;
    if (copy > 0) {
        prctl(PR_SET_PTRACER, copy);
        notes.mayStart.store(1);
        futexWakeAll(notes.mayStart);
        bool dead = false;
        const bool ended = waitForResult(copy, notes, patience, dead);
        if (!dead) {
            reap(copy);
        }
        prctl(PR_SET_PTRACER, 0);
        if (!ended) {
            kill(own, SIGCONT); // takes away what was to halt a thread for the copy, and would now halt them all
        }
        success = ended && notes.result.load() == succeeded;
        if (!ended && notes.leftFile.load() && undo != nullptr) {
            undo(argument);
        }
    }
    return success;
}

} // namespace brvUtils::os
