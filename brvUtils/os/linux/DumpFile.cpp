#include "brvUtils/os/DumpFile.h"

#include "brvUtils/os/linux/CrashException.h"
#include "brvUtils/os/linux/CrashLock.h"
#include "brvUtils/os/linux/FullMemory.h"

#include <client/linux/handler/exception_handler.h>
#include <client/linux/minidump_writer/minidump_writer.h>
#include <csignal>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

using CrashContext = google_breakpad::ExceptionHandler::CrashContext;

struct Order
{
    const char* file;
    DumpContents contents;
    pid_t process;
    CrashContext context;
};

/// One dump at a time: two would stop each other's threads.
CrashLock writerLock;

/// Ends the calling copy of the process after a time. While Breakpad halts the threads of the process nobody else could, and
/// it waits for each of them: one that waits itself for a program to start (vfork) may not halt for long.
class HaltLimit
{
public:
    HaltLimit()
    {
        std::signal(SIGALRM, SIG_DFL);
        sigset_t alarmSignal;
        sigemptyset(&alarmSignal);
        sigaddset(&alarmSignal, SIGALRM);
        sigprocmask(SIG_UNBLOCK, &alarmSignal, nullptr);
        alarm(copyPatience / 1000);
    }
    ~HaltLimit() { alarm(0); }
    HaltLimit(const HaltLimit&) = delete;
    HaltLimit& operator=(const HaltLimit&) = delete;
};

bool writeHalted(int minidump, const Order& order)
{
    const HaltLimit limit;
    return google_breakpad::WriteMinidump(minidump, order.process, &order.context, sizeof order.context);
}

/// Runs in a copy of the process. The dump is made in memory, for two reasons: Breakpad does not notice a full disk, and a
/// file should not be there before it is whole.
bool writeDump(void* argument, CopyNotes& notes)
{
    const Order& order = *static_cast<const Order*>(argument);
    Descriptor minidump;
    minidump.take(memfd_create("minidump", MFD_CLOEXEC));
    if (!minidump.open() || !writeHalted(minidump.get(), order)) {
        return false;
    }
    DumpTarget target;
    const bool whole = target.open(order.file, notes)
        && (order.contents == DumpContents::full ? appendWithFullMemory(minidump.get(), target, notes) : appendMinidump(minidump.get(), target))
        && target.finish();
    if (!whole) {
        target.abandon();
    }
    return whole;
}

void removeFile(void* argument)
{
    unlink(static_cast<const Order*>(argument)->file);
}

void describe(CrashContext& context, const siginfo_t& signal, const ucontext_t& registers, pid_t thread)
{
    context.siginfo = signal;
    context.tid = thread;
    context.context = registers;
    if (registers.uc_mcontext.fpregs != nullptr) {
        std::memcpy(&context.float_state, registers.uc_mcontext.fpregs, sizeof context.float_state);
    }
}

} // namespace

bool writeDumpFile(const char* file, DumpContents contents, _EXCEPTION_POINTERS* exception) noexcept
{
    Order order{file, contents, getpid(), {}};
    if (exception != nullptr) {
        describe(order.context, *exception->signal, *exception->context, exception->thread);
    } else {
        siginfo_t nothing{};
        ucontext_t here{};
        nothing.si_signo = static_cast<int>(MD_EXCEPTION_CODE_LIN_DUMP_REQUESTED);
        getcontext(&here);
        describe(order.context, nothing, here, gettid());
    }
    // Not had by a thread that crashed while it had it, nor when such a one waits for the crash that this dump is of.
    const bool taken = writerLock.take(copyPatience);
    const bool written = runInCopy(writeDump, &order, removeFile);
    if (taken) {
        writerLock.give();
    }
    return written;
}

} // namespace brvUtils::os
