#pragma once

#include "brvUtils/os/ChildProcess.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brvTesting {

using Arguments = std::vector<std::string>;
using Variables = std::vector<std::pair<std::string, std::string>>;

/// Defines a function that tests run in a process of its own, with `arguments` in reach. What it returns is the exit code.
///
///     BRV_CHILD(holder)
///     {
///         brvUtils::SemaphoreWin32 semaphore(arguments[0]);
///         childSay("ready");
///         childHear();
///         return 0;
///     }
///
///     TEST(Semaphore, ...)
///     {
///         Child child("holder", {name});
///         child.expectLine("ready");
///         child.send("go");
///         child.expectExit(0);
///     }
#define BRV_CHILD(name)                                                                                                   \
    static int brvChild_##name(const ::brvTesting::Arguments& arguments);                                                 \
    [[maybe_unused]] static const bool brvChildKnown_##name = ::brvTesting::addChildFunction(#name, brvChild_##name);    \
    static int brvChild_##name([[maybe_unused]] const ::brvTesting::Arguments& arguments)

/// A process that runs a function defined by BRV_CHILD: this executable, started again.
///
/// The expectations wait as long as the deadline allows (30 s unless set), fail the test at the line that calls them and
/// show what the child wrote; a child that did not meet one in time is killed, so that nothing waits for it again. They
/// return whether they were met. A child that still runs is killed by the destructor, and by the end of this process (on
/// Linux: of the thread that started it). One thread at a time.
class Child
{
public:
    /// Starts the child; the test fails when that is not possible. The variables are added to its environment.
    explicit Child(const std::string& name, const Arguments& arguments = {}, const Variables& variables = {});
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// For each wait from now on.
    void setDeadline(std::chrono::milliseconds deadline) { deadline_ = deadline; }

    /// The next line of its standard output is `text`.
    bool expectLine(const std::string& text, const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// `text` is one of the lines to come; those before it are passed over, such as messages of the library.
    bool awaitLine(const std::string& text, const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// The next line, whatever it is; empty when the output has ended, and after a failure.
    std::string readLine(const char* file = __builtin_FILE(), int line = __builtin_LINE());

    /// Sends a line that the child takes by childHear.
    bool send(const std::string& text, const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// The child's next childHear finds the end of its input.
    void closeInput() { process_.closeInput(); }

    /// Kills it, wherever it is, and returns when it is gone from the system.
    bool kill(const char* file = __builtin_FILE(), int line = __builtin_LINE());

    /// It ends, or has ended, by returning `code`.
    bool expectExit(int code, const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// It ends, or has ended, by `abort()`.
    bool expectAbort(const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// It was ended by `kill`.
    bool expectKilled(const char* file = __builtin_FILE(), int line = __builtin_LINE());
    /// Waits for its end, however it comes; Kind::running after a failure.
    brvUtils::os::ChildExit waitForEnd(const char* file = __builtin_FILE(), int line = __builtin_LINE());

    /// The number of the process.
    std::uint32_t id() const { return process_.id(); }
    /// What it wrote to its error stream; complete once its end was seen.
    const std::string& err() const { return process_.errorOutput(); }

private:
    brvUtils::os::Milliseconds timeout() const { return static_cast<brvUtils::os::Milliseconds>(deadline_.count()); }
    std::optional<std::string> next();
    bool expectEnd(const brvUtils::os::ChildExit& expected, const char* file, int line);
    bool fail(const std::string& what, const char* file, int line);

    std::string name_;
    std::chrono::milliseconds deadline_{std::chrono::seconds(30)};
    brvUtils::os::ChildProcess process_;
    std::string lines_; ///< All that was read, for failure messages.
    bool failed_ = false;
};

/// In the child: writes a line for expectLine and flushes it.
void childSay(const std::string& line);

/// In the child: the next line that the parent sent, waiting for it; nothing when the parent closed the input or is gone.
std::optional<std::string> childHear();

/// For `main`: runs the child's function when this process was started as a child, and gives its exit code. Call it first.
std::optional<int> runAsChild(int argc, char** argv);

/// For BRV_CHILD.
bool addChildFunction(const char* name, int (*function)(const Arguments&));

} // namespace brvTesting
