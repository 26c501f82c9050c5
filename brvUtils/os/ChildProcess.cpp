// The half of ChildProcess that both systems share.
#include "brvUtils/os/ChildProcess.h"

#include <algorithm>
#include <chrono>

namespace brvUtils::os {

namespace {

constexpr std::size_t twoFullPipes = 2 * 1024 * 1024; // of the largest size that systems allow

/// Counts a wait down that is made in several steps.
class Countdown
{
public:
    explicit Countdown(Milliseconds timeout) : timeout_(timeout) {}

    Milliseconds left() const
    {
        if (timeout_ == infinite) {
            return infinite;
        }
        const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_).count();
        return passed >= timeout_ ? 0 : timeout_ - static_cast<Milliseconds>(passed);
    }

private:
    using Clock = std::chrono::steady_clock;
    Milliseconds timeout_;
    Clock::time_point start_ = Clock::now();
};

} // namespace

bool ChildProcess::write(const std::string& text, Milliseconds timeout)
{
    const Countdown countdown(timeout);
    std::string left = text;
    while (writeSome(left)) {
        if (left.empty()) {
            return true;
        }
        if (!collect(countdown.left(), true)) {
            break;
        }
    }
    closeInput();
    return false;
}

std::optional<std::string> ChildProcess::readLine(Milliseconds timeout)
{
    const Countdown countdown(timeout);
    std::size_t end;
    while ((end = output_.find('\n')) == std::string::npos && outputOpen() && collect(countdown.left())) {
    }
    if (end == std::string::npos && (outputOpen() || output_.empty())) {
        return std::nullopt;
    }
    std::string line = output_.substr(0, end);
    output_.erase(0, end == std::string::npos ? end : end + 1);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

ChildExit ChildProcess::wait(Milliseconds timeout)
{
    const Countdown countdown(timeout);
    while (id() != 0 && exit_.kind == ChildExit::Kind::running && collect(countdown.left())) {
    }
    if (exit_.kind != ChildExit::Kind::running) {
        // What it wrote last. Not until the streams end: a child of the child may keep them open and write on.
        const std::size_t most = output_.size() + error_.size() + twoFullPipes;
        while (output_.size() + error_.size() < most && collect(0)) {
        }
    }
    return exit_;
}

} // namespace brvUtils::os
