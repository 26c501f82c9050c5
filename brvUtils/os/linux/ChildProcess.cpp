#include "brvUtils/os/ChildProcess.h"

#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/Errno.h"

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

/// The same file under a number above those of the standard streams: the system hands these out as well when this process
/// has closed a stream, and a child that gets its own streams would lose what has them.
int aboveStandardStreams(int number)
{
    if (number < 0 || number > STDERR_FILENO) {
        return number;
    }
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(number);
    return moved;
}

bool makePipe(Descriptor& readEnd, Descriptor& writeEnd)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    readEnd.take(aboveStandardStreams(ends[0]));
    writeEnd.take(aboveStandardStreams(ends[1]));
    return readEnd.open() && writeEnd.open();
}

std::vector<std::string> environmentOf(const ChildCommand& command)
{
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const bool replaced = std::any_of(command.environment.begin(), command.environment.end(),
            [&](const auto& variable) { return text.compare(0, variable.first.size() + 1, variable.first + "=") == 0; });
        if (!replaced) {
            all.push_back(text);
        }
    }
    for (const auto& [name, value] : command.environment) {
        all.push_back(name + "=" + value);
    }
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// What the new process does until it becomes the program. Other threads of the parent may have held any lock when it
/// was forked, so only system calls are made here.
[[noreturn]] void becomeProgram(
    char* const* arguments, char* const* environment, const std::array<int, 3>& streams, pid_t parent, int failure)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(127); // The parent ended before the line above.
    }
    for (int stream = 0; stream < 3; ++stream) {
        if (streams[stream] >= 0) {
            dup2(streams[stream], stream);
        }
    }
    // Also what other code of this process opened without closing it on exec.
    close_range(3, ~0u, CLOSE_RANGE_CLOEXEC);
    execve(arguments[0], arguments, environment);
    const int number = errno;
    (void)!::write(failure, &number, sizeof number);
    _exit(127);
}

/// Adds what the pipe holds, and closes it at its end.
void takeIn(Descriptor& pipe, std::string& text)
{
    char buffer[4096];
    const ssize_t size = read(pipe.get(), buffer, sizeof buffer);
    if (size > 0) {
        text.append(buffer, static_cast<std::size_t>(size));
    } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        pipe.close();
    }
}

} // namespace

struct ChildProcess::System
{
    pid_t id = 0;
    Descriptor process; ///< Open until the end was seen. Names the child also when its number has gone to another process.
    Descriptor input;
    Descriptor output;
    Descriptor error;

    ~System()
    {
        if (process.open()) {
            kill();
            waitForEnd();
        }
    }

    void kill() const
    {
        // Not by the functions for these descriptors, whose header lacks C linkage in glibc 2.36.
        syscall(SYS_pidfd_send_signal, process.get(), SIGKILL, nullptr, 0);
    }

    ChildExit waitForEnd()
    {
        siginfo_t end {};
        int result;
        while ((result = waitid(P_PIDFD, static_cast<id_t>(process.get()), &end, WEXITED)) != 0 && errno == EINTR) {
        }
        process.close();
        if (result != 0) {
            return {ChildExit::Kind::exited, ChildExit::unknownCode};
        }
        return {end.si_code == CLD_EXITED ? ChildExit::Kind::exited : ChildExit::Kind::killed, end.si_status};
    }
};

ChildExit exitAfterAbort()
{
    return {ChildExit::Kind::killed, SIGABRT};
}

ChildExit exitAfterKill()
{
    return {ChildExit::Kind::killed, SIGKILL};
}

ChildProcess::ChildProcess() : system_(std::make_unique<System>()) {}
ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

ErrorCode ChildProcess::start(const ChildCommand& command)
{
    if (id() != 0) {
        return error::invalidParameter;
    }
    Descriptor input, output, error, failure, failureInChild;
    auto system = std::make_unique<System>();
    if ((command.pipeInput && !makePipe(input, system->input)) || (command.pipeOutput && !makePipe(system->output, output))
        || (command.pipeError && !makePipe(system->error, error)) || !makePipe(failure, failureInChild)) {
        return fromErrno(errno);
    }
    for (const Descriptor* pipe : {&system->input, &system->output, &system->error}) {
        fcntl(pipe->get(), F_SETFL, O_NONBLOCK);
    }

    std::vector<std::string> arguments = command.arguments;
    arguments.insert(arguments.begin(), command.program);
    std::vector<std::string> environment = environmentOf(command);
    const std::vector<char*> argumentPointers = pointersTo(arguments);
    const std::vector<char*> environmentPointers = pointersTo(environment);

    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        return fromErrno(errno);
    }
    if (child == 0) {
        becomeProgram(argumentPointers.data(), environmentPointers.data(), {input.get(), output.get(), error.get()}, parent,
            failureInChild.get());
    }
    system->id = child;
    system->process.take(aboveStandardStreams(static_cast<int>(syscall(SYS_pidfd_open, child, 0))));
    if (!system->process.open()) {
        const ErrorCode code = fromErrno(errno);
        ::kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        return code;
    }
    failureInChild.close();
    int number = 0;
    ssize_t size;
    while ((size = read(failure.get(), &number, sizeof number)) < 0 && errno == EINTR) {
    }
    if (size > 0) {
        return fromErrno(number);
    }
    system_ = std::move(system);
    return error::none;
}

std::uint32_t ChildProcess::id() const
{
    return static_cast<std::uint32_t>(system_->id);
}

bool ChildProcess::writeSome(std::string& text)
{
    // A pipe that nobody reads raises a signal in the thread that writes; it must not end this process.
    sigset_t brokenPipe, before, pending;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
    const ssize_t size = ::write(system_->input.get(), text.data(), text.size());
    const int number = errno;
    if (size < 0 && number == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
        const timespec now{};
        sigtimedwait(&brokenPipe, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    text.erase(0, size < 0 ? 0 : static_cast<std::size_t>(size));
    return size >= 0 || number == EAGAIN || number == EINTR;
}

bool ChildProcess::collect(Milliseconds timeout, bool untilWritable)
{
    std::array<pollfd, 4> waits{{{system_->process.get(), POLLIN, 0}, {system_->output.get(), POLLIN, 0},
        {system_->error.get(), POLLIN, 0}, {untilWritable ? system_->input.get() : -1, POLLOUT, 0}}};
    if (std::all_of(waits.begin(), waits.end(), [](const pollfd& wait) { return wait.fd < 0; })) {
        return false;
    }
    const int limit = timeout == infinite ? -1 : static_cast<int>(std::min<Milliseconds>(timeout, INT_MAX));
    if (poll(waits.data(), waits.size(), limit) == 0) {
        return false;
    }
    if (waits[1].revents != 0) {
        takeIn(system_->output, output_);
    }
    if (waits[2].revents != 0) {
        takeIn(system_->error, error_);
    }
    if (waits[0].revents != 0) {
        exit_ = system_->waitForEnd();
    }
    return true;
}

bool ChildProcess::outputOpen() const
{
    return system_->output.open();
}

void ChildProcess::closeInput()
{
    system_->input.close();
}

void ChildProcess::kill()
{
    if (system_->process.open()) {
        system_->kill();
    }
}

} // namespace brvUtils::os
