#pragma once

#include "brvUtils/ipc/IEvent.h"

#include <string>

namespace brvUtils {

namespace os {
struct Event;
}

/// An event of the operating system, shared by name between processes.
///
/// A manual-reset event stays signalled until reset(); an auto-reset event lets one waiter through per set(). It lives
/// while any process has it open; the process that makes it decides its kind and first state. Failing to make it throws
/// nothing: the object then has no handle, and each operation fails. May be used from several threads at once.
///
/// A copy carries the same handle, and each copy closes it: copies are of use only while one of them is kept alive.
class BRVUTILS_API EventWin32 : public IEvent
{
public:
    /// Opens the event of that name, or makes it. The name is qualified by the instance of the suite
    /// (buildKeyWithInstance). On failure prints "ERROR opening/creating EventWin32: <qualified name>" to the standard
    /// output.
    /// \param name never null; with the instance 1 to 259 bytes.
    /// \param manualReset, initiallySet its kind and state when this call makes it.
    EventWin32(char const* name, bool manualReset, bool initiallySet);
    /// Carries the same handle, see above.
    EventWin32(const EventWin32&) = default;
    /// The same. The handle that it had is not closed.
    EventWin32& operator=(const EventWin32&) = default;

    /// Closes the handle.
    ~EventWin32() override;

    bool set() override;
    bool reset() override;

    /// As IEvent::ask. A time-out is silent; a failed wait prints a line to the standard output.
    bool ask(double timeout) override;

    /// The qualified name.
    char const* eventName() const override;

    /// The system's handle; null when the event could not be made. Stays owned by this object.
    void* getHandle() const;

    /// Makes one as the constructor does; the caller owns it. Null when memory is short.
    static IEvent* New(char const* name, bool manualReset, bool initiallySet);

private:
    std::string name_; ///< Qualified.
    os::Event* handle_;
};

} // namespace brvUtils
