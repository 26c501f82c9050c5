#include "brvUtils/os/OtherProcesses.h"

#include "brvUtils/os/ProcessLife.h"
#include "brvUtils/os/linux/DeletedFile.h"
#include "brvUtils/os/linux/NumberedEntries.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/syscall.h>
#include <time.h>

namespace brvUtils::os {
namespace {

std::string_view lastPart(std::string_view path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is the start
}

/// Compares the name that a process goes by, of which the system keeps 15 bytes, and where that is cut the name that it was
/// started under. What was started under none is no program.
bool goesBy(int folder, const std::string& id, std::string_view name)
{
    constexpr std::size_t kept = 15;
    char nameBuffer[64];
    char argumentBuffer[4096];
    const std::string_view line = readBeginning(folder, (id + "/comm").c_str(), nameBuffer);
    const std::string_view arguments = readBeginning(folder, (id + "/cmdline").c_str(), argumentBuffer);
    return !arguments.empty() && line.substr(0, line.rfind('\n')) == name.substr(0, kept)
        && (name.size() < kept || lastPart(arguments.substr(0, arguments.find('\0'))) == name);
}

bool runs(int folder, const std::string& id, std::string_view name)
{
    char buffer[4096];
    const ssize_t length = readlinkat(folder, (id + "/exe").c_str(), buffer, sizeof buffer);
    if (length < 0) {
        return errno == EACCES && goesBy(folder, id, name);
    }
    const std::string_view file = lastPart({ buffer, static_cast<std::size_t>(length) });
    return file == name || (file.substr(0, name.size()) == name && file.substr(name.size()) == deletedMark);
}

/// What the threads of a process do.
struct Threads
{
    int running = 0; ///< Or waiting for something.
    int stopped = 0;
    bool stopping = false; ///< The signal is on its way.
    bool traced = false;
};

/// The value of a line of a thread's status.
std::string_view valueOf(std::string_view status, std::string_view label)
{
    const std::size_t position = status.find(label);
    return position != status.npos ? status.substr(position + label.size()) : std::string_view();
}

Threads look(std::uint32_t id)
{
    Threads threads;
    char path[32];
    std::snprintf(path, sizeof path, "/proc/%u/task", id);
    anyNumberedEntry(path, [&](int folder, const char* thread) {
        char file[288];
        std::snprintf(file, sizeof file, "%s/status", thread);
        char buffer[4096];
        const std::string_view status = readBeginning(folder, file, buffer);
        const std::string_view state = valueOf(status, "\nState:\t");
        const std::string_view tracer = valueOf(status, "\nTracerPid:\t");
        const std::string_view pending = valueOf(status, "\nShdPnd:\t");
        constexpr std::size_t digits = 16; // of the set of signals
        if (state.empty() || state.front() == 'Z' || state.front() == 'X' || tracer.empty() || pending.size() < digits) {
            return false; // it has ended
        }
        ++(state.front() == 'T' ? threads.stopped : threads.running);
        threads.traced = threads.traced || tracer.front() != '0';
        // The digits end with a line end, and the text with what follows, so that no zero is needed.
        threads.stopping = threads.stopping || (std::strtoull(pending.data(), nullptr, 16) >> (SIGSTOP - 1) & 1U) != 0;
        return false;
    });
    return threads;
}

/// A process that keeps its number as long as this lives.
class Target
{
public:
    explicit Target(std::uint32_t id) : id_(static_cast<pid_t>(id))
    {
        process_.take(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
    }

    bool send(int signal) const
    {
        // Without a descriptor the system is too old for it, or the process has just gone.
        return (process_.open() ? syscall(SYS_pidfd_send_signal, process_.get(), signal, nullptr, 0) : kill(id_, signal)) == 0;
    }

private:
    pid_t id_;
    Descriptor process_;
};

bool mayBeStopped(std::uint32_t id)
{
    return id != 1 && id != currentProcessId() && processIsAlive(id); // the first one takes no notice of the signal
}

} // namespace

bool executableIsRunning(const std::string& name)
{
    return !name.empty() && anyNumberedEntry("/proc", [&](int folder, const char* id) { return runs(folder, id, name); });
}

bool suspendProcess(std::uint32_t id) noexcept
{
    const Target target(id);
    const Threads before = look(id);
    // Where no thread can be looked at, as without a free descriptor, nobody could tell whether it stands.
    const bool runs = before.running != 0 && before.stopped == 0 && !before.stopping && !before.traced;
    if (!mayBeStopped(id) || !runs || !target.send(SIGSTOP)) {
        return false;
    }
    // Each thread stops as soon as it runs; one that waits for a disk does not run, and the others stop all the same.
    constexpr int patience = 1000; // ms
    Threads now = look(id);
    for (int i = 0; i < patience && now.running != 0; ++i) {
        const timespec pause { 0, 1000000 };
        nanosleep(&pause, nullptr);
        now = look(id);
    }
    return now.stopped != 0 || now.stopping;
}

bool resumeProcess(std::uint32_t id) noexcept
{
    const Target target(id);
    const Threads now = look(id);
    return mayBeStopped(id) && !now.traced && (now.stopped != 0 || now.stopping) && target.send(SIGCONT);
}

} // namespace brvUtils::os
