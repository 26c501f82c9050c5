#pragma once

#include "brvUtils/os/Wait.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brvUtils::os {

/// What a child is started with. All text is UTF-8.
struct ChildCommand
{
    std::string program; ///< Path of the executable; no search path is consulted.
    std::vector<std::string> arguments; ///< Behind the program's name; each arrives as it is, whatever it holds.
    std::vector<std::pair<std::string, std::string>> environment; ///< Added to this process's own, or in place of them.
    bool pipeInput = false; ///< A pipe that `write` fills, or the stream of this process.
    bool pipeOutput = false; ///< A pipe that fills `output`, or the stream of this process.
    bool pipeError = false; ///< A pipe that fills `errorOutput`, or the stream of this process.
};

/// How a process stands.
struct ChildExit
{
    enum class Kind {
        running, ///< Not ended, or never started.
        exited, ///< Ended with `code`. On Windows every end is one of these.
        killed ///< Ended by the signal `code`.
    };

    /// The code where the system keeps none: on Linux for a process that ignores the signal about the ends of children.
    static constexpr int unknownCode = -1;

    Kind kind = Kind::running;
    int code = 0;

    bool operator==(const ChildExit& other) const { return kind == other.kind && code == other.code; }
};

/// How a process stands after `abort()`.
ChildExit exitAfterAbort();

/// How a process stands after ChildProcess::kill.
ChildExit exitAfterKill();

/// A program started by this process, with pipes to its standard streams.
///
/// The child inherits nothing but its three streams, so that children started at the same time do not hold each other's
/// pipes open. A child that still runs is killed by the destructor. It is killed as well when this process ends; on
/// Linux already when the thread that started it ends. An object serves one thread at a time.
///
/// Whenever a function waits, it takes in what the child writes to its piped streams, so that no child is ever stopped
/// by a full pipe while this process waits for it. An object that was moved from can only be destroyed or assigned to.
class ChildProcess
{
public:
    ChildProcess();
    ~ChildProcess();
    ChildProcess(ChildProcess&&) noexcept;
    ChildProcess& operator=(ChildProcess&&) noexcept;

    /// Starts the program. `error::none` means that it runs; error::fileNotFound and the like that it could not be run.
    /// An object starts one child only.
    ErrorCode start(const ChildCommand& command);

    /// The number of the process; 0 before it was started.
    std::uint32_t id() const;

    /// Writes all of the text to the piped input. False when the child did not take it in time or nobody reads the pipe
    /// any more; the pipe is closed then, since a part of the text may have gone.
    bool write(const std::string& text, Milliseconds timeout);

    /// Closes the piped input; the child reads the end of its input.
    void closeInput();

    /// Takes the next line of the piped output without its line end (also a carriage return). Behind the last line end
    /// the rest counts as a line. Nothing when the output has ended or no whole line came in time.
    std::optional<std::string> readLine(Milliseconds timeout);

    /// Whether more may come through the piped output: its end was not read yet.
    bool outputOpen() const;

    /// Waits until the child has ended. Kind::running when it did not end in time.
    ChildExit wait(Milliseconds timeout);

    /// Ends the child at once; it has no chance to clean up. Does not wait. Nothing happens when it has ended already.
    void kill();

    /// What came through the piped output and was not yet taken by readLine.
    const std::string& output() const { return output_; }

    /// All that came through the piped error stream.
    const std::string& errorOutput() const { return error_; }

private:
    struct System;

    /// Waits until something came, a stream or the child ended, or the input can be written to where that is asked for,
    /// and takes in what is there. False when the time was over before.
    bool collect(Milliseconds timeout, bool untilWritable = false);
    /// Removes from the text what the pipe took. To be called with the same text until nothing is left. False when nobody reads the pipe any more.
    bool writeSome(std::string& text);

    std::unique_ptr<System> system_;
    std::string output_;
    std::string error_;
    ChildExit exit_;
};

} // namespace brvUtils::os
