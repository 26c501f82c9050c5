#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace suite {

/// How a process ended.
struct ProcessEnd
{
    bool bySignal = false; ///< `code` is a signal that ended it; never so on Windows.
    int code = 0;

    /// It did its work, in its own eyes.
    bool good() const { return !bySignal && code == 0; }

    /// Such as "ended by signal 9" or "ended with code 1".
    std::string toText() const { return (bySignal ? "ended by signal " : "ended with code ") + std::to_string(code); }
};

/// Name and value, UTF-8.
using EnvironmentVariable = std::pair<std::string, std::string>;

/// A program started by this one, with the same standard streams. It does not get this one's Ctrl-C, and never outlives this
/// one, however that ends. One thread at a time; it has to stay until the process has ended.
class Process
{
public:
    /// \param program path of the executable, UTF-8. \param arguments behind the program's name, UTF-8.
    /// \param variables of its environment, in place of this one's of the same names; the others are the same. Of a name that
    ///        comes twice the last counts.
    /// \throw brvUtils::SystemRessourcesError when the system refuses. On Linux a program that cannot be run ends with
    ///        code 127 instead.
    Process(const std::string& program, const std::vector<std::string>& arguments,
        const std::vector<EnvironmentVariable>& variables = {});

    /// Kills it when it still runs, and waits for that.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// What the system calls it.
    std::uint32_t number() const;

    /// How it ended; nothing while it runs.
    std::optional<ProcessEnd> end();

    /// Ends it at once. Nothing when it has ended already. Does not wait.
    void kill();

private:
    struct System;

    std::unique_ptr<System> system_;
};

/// The number of this process.
std::uint32_t ownProcess();

/// Ends a process at once, whoever started it; on Windows with code 0. False when there is none, or this user may not.
bool killProcess(std::uint32_t number);

} // namespace suite
