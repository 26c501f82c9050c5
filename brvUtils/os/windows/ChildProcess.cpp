#include "brvUtils/os/ChildProcess.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ChildCommandText.h"
#include "brvUtils/os/windows/ChildPipe.h"

namespace brvUtils::os {

namespace {

constexpr UINT killedCode = 137; // As shells on Linux report a killed process.

/// Ends the children when this process ends, however that comes. Closed by the system only. Null when there is none.
HANDLE childrensJob()
{
    static const HANDLE job = [] {
        const HANDLE created = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_SILENT_BREAKAWAY_OK;
        const bool limited = SetInformationJobObject(created, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return limited ? created : nullptr;
    }();
    return job;
}

/// Says what a new process inherits: its standard streams and nothing else.
class StartupInformation
{
public:
    StartupInformation(ScopedHandle& input, ScopedHandle& output, ScopedHandle& error)
    {
        information_.StartupInfo.cb = sizeof information_;
        information_.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        information_.StartupInfo.hStdInput = add(input, STD_INPUT_HANDLE);
        information_.StartupInfo.hStdOutput = add(output, STD_OUTPUT_HANDLE);
        information_.StartupInfo.hStdError = add(error, STD_ERROR_HANDLE);

        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        list_.resize(size);
        information_.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(list_.data());
        InitializeProcThreadAttributeList(information_.lpAttributeList, 1, 0, &size);
        if (inherits()) {
            UpdateProcThreadAttribute(information_.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_,
                count_ * sizeof(HANDLE), nullptr, nullptr);
        }
    }
    ~StartupInformation() { DeleteProcThreadAttributeList(information_.lpAttributeList); }
    StartupInformation(const StartupInformation&) = delete;
    StartupInformation& operator=(const StartupInformation&) = delete;

    STARTUPINFOW* get() { return &information_.StartupInfo; }
    bool inherits() const { return count_ > 0; }

private:
    /// The stream, or a copy of this process's own where there is none. Null where this process has none either.
    HANDLE add(ScopedHandle& stream, DWORD own)
    {
        HANDLE copy = nullptr;
        const HANDLE ours = GetStdHandle(own);
        // The value for a failure is also the handle of this process, which would be copied.
        if (!stream.open() && ours != INVALID_HANDLE_VALUE
            && DuplicateHandle(GetCurrentProcess(), ours, GetCurrentProcess(), &copy, 0, TRUE, DUPLICATE_SAME_ACCESS)) {
            stream.take(copy);
        }
        if (stream.open()) {
            handles_[count_++] = stream.get();
        }
        return stream.get();
    }

    STARTUPINFOEXW information_{};
    std::string list_;
    HANDLE handles_[3] = {};
    std::size_t count_ = 0;
};

} // namespace

struct ChildProcess::System
{
    DWORD id = 0;
    ScopedHandle process; ///< Open until the end was seen.
    ChildPipe input;
    ChildPipe output;
    ChildPipe error;

    ~System()
    {
        if (process.open()) {
            TerminateProcess(process.get(), killedCode);
            WaitForSingleObject(process.get(), INFINITE);
        }
    }
};

ChildExit exitAfterAbort()
{
    return {ChildExit::Kind::exited, 3};
}

ChildExit exitAfterKill()
{
    return {ChildExit::Kind::exited, killedCode};
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
    auto system = std::make_unique<System>();
    ScopedHandle input, output, error;
    ErrorCode code = error::none;
    if ((command.pipeInput && (code = system->input.create(ChildPipe::Direction::toChild, input)) != error::none)
        || (command.pipeOutput && (code = system->output.create(ChildPipe::Direction::fromChild, output)) != error::none)
        || (command.pipeError && (code = system->error.create(ChildPipe::Direction::fromChild, error)) != error::none)) {
        return code;
    }
    StartupInformation startup(input, output, error);
    const std::wstring program = wideFromUtf8(command.program);
    std::wstring line = commandLineOf(command);
    std::wstring environment = environmentBlockOf(command);
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, startup.inherits(),
            CREATE_SUSPENDED | CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT, environment.data(), nullptr,
            startup.get(), &started)) {
        return GetLastError();
    }
    system->process.take(started.hProcess);
    system->id = started.dwProcessId;
    const ScopedHandle thread(started.hThread);
    if (!AssignProcessToJobObject(childrensJob(), started.hProcess)) {
        return GetLastError(); // A child that might outlive this process is ended.
    }
    ResumeThread(thread.get());
    for (ChildPipe* pipe : {&system->output, &system->error}) {
        if (pipe->open()) {
            pipe->beginReading();
        }
    }
    system_ = std::move(system);
    return error::none;
}

std::uint32_t ChildProcess::id() const
{
    return system_->id;
}

bool ChildProcess::writeSome(std::string& text)
{
    return system_->input.write(text);
}

bool ChildProcess::collect(Milliseconds timeout, bool untilWritable)
{
    HANDLE handles[4];
    DWORD count = 0;
    if (system_->process.open()) {
        handles[count++] = system_->process.get();
    }
    for (const ChildPipe* pipe : {&system_->output, &system_->error}) {
        if (pipe->open()) {
            handles[count++] = pipe->event();
        }
    }
    if (untilWritable) {
        handles[count++] = system_->input.event();
    }
    if (count == 0 || WaitForMultipleObjects(count, handles, FALSE, timeout) >= WAIT_OBJECT_0 + count) {
        return false;
    }
    if (system_->output.open()) {
        system_->output.takeIn(output_);
    }
    if (system_->error.open()) {
        system_->error.takeIn(error_);
    }
    DWORD code = 0;
    if (system_->process.open() && WaitForSingleObject(system_->process.get(), 0) == WAIT_OBJECT_0
        && GetExitCodeProcess(system_->process.get(), &code)) {
        exit_ = {ChildExit::Kind::exited, static_cast<int>(code)};
        system_->process.close();
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
        TerminateProcess(system_->process.get(), killedCode);
    }
}

} // namespace brvUtils::os
