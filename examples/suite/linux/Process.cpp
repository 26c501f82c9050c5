#include "../Process.h"

#include <brvUtils/core/Errors.h>

#include <cerrno>
#include <csignal>
#include <map>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace suite {

struct Process::System
{
    pid_t number = 0;
    std::optional<ProcessEnd> end;

    void look(int options)
    {
        int status = 0;
        pid_t found = 0;
        while (!end && (found = waitpid(number, &status, options)) != 0) {
            if (found == number) {
                end = WIFSIGNALED(status) ? ProcessEnd{true, WTERMSIG(status)} : ProcessEnd{false, WEXITSTATUS(status)};
            } else if (errno != EINTR) {
                end = ProcessEnd{false, -1}; // ends of children are ignored by this process: nobody knows
            }
        }
    }
};

namespace {

/// "NAME=value" each: this process's own but for those that the new ones replace, and these.
std::vector<std::string> environmentWith(const std::vector<EnvironmentVariable>& variables)
{
    std::map<std::string, std::string> byName;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        byName.emplace(text.substr(0, text.find('=')), text);
    }
    for (const auto& [name, value] : variables) {
        byName[name] = name + "=" + value;
    }
    std::vector<std::string> texts;
    for (const auto& entry : byName) {
        texts.push_back(entry.second);
    }
    return texts;
}

/// As the system wants them, with a null behind the last.
std::vector<char*> pointersTo(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(
    const std::string& program, const std::vector<std::string>& arguments, const std::vector<EnvironmentVariable>& variables)
    : system_(std::make_unique<System>())
{
    std::vector<char*> line = pointersTo(arguments);
    line.insert(line.begin(), const_cast<char*>(program.c_str()));
    const std::vector<std::string> environment = environmentWith(variables);
    const std::vector<char*> entries = pointersTo(environment);

    std::signal(SIGCHLD, SIG_DFL); // whoever ignored it before this program began would hide how children end
    const pid_t parent = getpid();
    system_->number = fork();
    if (system_->number == 0) {
        // Other threads may have held any lock when this was forked: system calls only.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(127); // the parent ended before the line above
        }
        setpgid(0, 0); // a terminal sends its Ctrl-C to the parent's group
        execve(line[0], line.data(), entries.data());
        _exit(127);
    }
    if (system_->number < 0) {
        throw brvUtils::SystemRessourcesError("No process can be started for " + program);
    }
}

Process::~Process()
{
    kill();
    system_->look(0);
}

std::uint32_t Process::number() const
{
    return static_cast<std::uint32_t>(system_->number);
}

std::optional<ProcessEnd> Process::end()
{
    system_->look(WNOHANG);
    return system_->end;
}

void Process::kill()
{
    if (!system_->end) { // the number is its own until its end was seen
        ::kill(system_->number, SIGKILL);
    }
}

std::uint32_t ownProcess()
{
    return static_cast<std::uint32_t>(getpid());
}

bool killProcess(std::uint32_t number)
{
    return ::kill(static_cast<pid_t>(number), SIGKILL) == 0;
}

} // namespace suite
