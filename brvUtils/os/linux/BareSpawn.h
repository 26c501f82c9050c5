#pragma once

#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace brvUtils::os {

// A whole process with nothing around it, for benchmarks of what it costs to start one.

struct BareRun
{
    bool succeeded = false; ///< It ended by itself with code 0.
    double elapsed = 0; ///< Nanoseconds from before its start until it was awaited.
    double processor = 0; ///< Nanoseconds that it took of a processor, in its own code and in the system's.
};

/// Starts a program in the cheapest way that there is, its standard output going nowhere, and awaits it.
/// \param arguments the first is the path of the program. \param environment all of its environment, "NAME=value".
inline BareRun bareRun(const std::vector<std::string>& arguments, const std::vector<std::string>& environment)
{
    const auto pointers = [](const std::vector<std::string>& texts) {
        std::vector<char*> list;
        for (const std::string& text : texts) {
            list.push_back(const_cast<char*>(text.c_str()));
        }
        list.push_back(nullptr);
        return list;
    };
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> variables = pointers(environment);
    static const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, nowhere, STDOUT_FILENO);

    BareRun run;
    pid_t process = 0;
    int status = 0;
    rusage usage{};
    const auto start = std::chrono::steady_clock::now();
    run.succeeded = posix_spawn(&process, argv.front(), &actions, nullptr, argv.data(), variables.data()) == 0
        && wait4(process, &status, 0, &usage) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    run.elapsed = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    for (const timeval& part : {usage.ru_utime, usage.ru_stime}) {
        run.processor += static_cast<double>(part.tv_sec) * 1e9 + static_cast<double>(part.tv_usec) * 1e3;
    }
    return run;
}

/// The environment of this process.
inline std::vector<std::string> bareEnvironment()
{
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    return variables;
}

} // namespace brvUtils::os
