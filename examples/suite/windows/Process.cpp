#include "../Process.h"

#include <Utilities/Encoding.h>
#include <brvUtils/core/Errors.h>

#include <windows.h>

#include <cwchar>
#include <map>

namespace suite {

namespace {

constexpr UINT killedCode = 137; // as shells report a killed process

/// Ends the processes in it when its last handle is closed, which is when this process ends. Null when there is none.
HANDLE endsWithThisProcess()
{
    static const HANDLE job = [] {
        const HANDLE created = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        return SetInformationJobObject(created, JobObjectExtendedLimitInformation, &limits, sizeof limits) ? created : nullptr;
    }();
    return job;
}

/// As programs split it: a backslash is one, except in front of a quotation mark.
std::wstring quoted(const std::string& argument)
{
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : Utilities::Encoding::Transcode(argument)) {
        if (character == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        text += character;
    }
    return text.append(backslashes, L'\\') + L'"';
}

/// Case does not count in names.
struct LessByName
{
    bool operator()(const std::wstring& left, const std::wstring& right) const
    {
        return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};

/// "NAME=value" each, with a zero behind it and one more at the end, sorted by name: this process's own but for those that
/// the new ones replace, and these.
std::wstring environmentWith(const std::vector<EnvironmentVariable>& variables)
{
    std::map<std::wstring, std::wstring, LessByName> byName;
    wchar_t* const own = GetEnvironmentStringsW();
    for (const wchar_t* entry = own; entry != nullptr && *entry != L'\0'; entry += std::wcslen(entry) + 1) {
        const std::wstring text = entry;
        byName.emplace(text.substr(0, text.find(L'=', 1)), text); // the system has some that begin with '='
    }
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : variables) {
        byName[Utilities::Encoding::Transcode(name)] = Utilities::Encoding::Transcode(name + "=" + value);
    }
    std::wstring block;
    for (const auto& entry : byName) {
        block += entry.second + L'\0';
    }
    return block + L'\0';
}

} // namespace

struct Process::System
{
    DWORD number = 0;
    HANDLE handle = nullptr;

    ~System()
    {
        if (handle != nullptr) {
            TerminateProcess(handle, killedCode);
            WaitForSingleObject(handle, INFINITE);
            CloseHandle(handle);
        }
    }
};

Process::Process(
    const std::string& program, const std::vector<std::string>& arguments, const std::vector<EnvironmentVariable>& variables)
    : system_(std::make_unique<System>())
{
    const std::wstring file = Utilities::Encoding::Transcode(program);
    std::wstring line = L'"' + file + L'"';
    for (const std::string& argument : arguments) {
        line += L' ' + quoted(argument);
    }
    std::wstring environment = environmentWith(variables);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE,
            CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP | CREATE_UNICODE_ENVIRONMENT, environment.data(), nullptr, &startup, &started)) {
        throw brvUtils::SystemRessourcesError(program + " cannot be run");
    }
    system_->number = started.dwProcessId;
    system_->handle = started.hProcess;
    const bool bound = AssignProcessToJobObject(endsWithThisProcess(), started.hProcess);
    if (bound) {
        ResumeThread(started.hThread);
    }
    CloseHandle(started.hThread);
    if (!bound) {
        throw brvUtils::SystemRessourcesError(program + " would outlive this process");
    }
}

Process::~Process() = default;

std::uint32_t Process::number() const
{
    return system_->number;
}

std::optional<ProcessEnd> Process::end()
{
    DWORD code = 0;
    if (WaitForSingleObject(system_->handle, 0) != WAIT_OBJECT_0 || !GetExitCodeProcess(system_->handle, &code)) {
        return std::nullopt;
    }
    return ProcessEnd{false, static_cast<int>(code)};
}

void Process::kill()
{
    TerminateProcess(system_->handle, killedCode);
}

std::uint32_t ownProcess()
{
    return GetCurrentProcessId();
}

bool killProcess(std::uint32_t number)
{
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, number);
    const bool killed = process != nullptr && TerminateProcess(process, 0); // some tools do so
    if (process != nullptr) {
        CloseHandle(process);
    }
    return killed;
}

} // namespace suite
