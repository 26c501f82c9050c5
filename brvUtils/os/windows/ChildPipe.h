#pragma once

#include "brvUtils/os/Error.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <string>

namespace brvUtils::os {

/// A pipe between this process and a child. One operation at a time is under way at this process's end, so that waits can
/// have a limit; anonymous pipes cannot do that. Not to be moved while it is open.
class ChildPipe
{
public:
    enum class Direction { fromChild, toChild };

    ChildPipe() = default;
    ~ChildPipe() { close(); }

    /// Makes both ends; the child's can be inherited.
    ErrorCode create(Direction direction, ScopedHandle& childEnd);
    bool open() const { return pipe_.open(); }
    /// Gives up what is under way.
    void close();

    /// Set when the operation under way has ended.
    HANDLE event() const { return event_.get(); }

    /// Begins to read. Closes at the end of the stream.
    void beginReading();
    /// Adds what was read when the reading has ended, and begins the next.
    void takeIn(std::string& text);
    /// Begins to write the text, or removes from it what was written when the writing has ended. False when nobody reads
    /// the pipe.
    bool write(std::string& text);

private:
    ScopedHandle pipe_;
    ScopedHandle event_;
    OVERLAPPED overlapped_{};
    bool writing_ = false;
    std::string buffer_;
};

} // namespace brvUtils::os
