#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

/// An event that is signalled or not. Objects may be used from several threads at once.
class BRVUTILS_API IEvent
{
public:
    virtual ~IEvent();

    /// Signals the event. \return whether that was possible.
    virtual bool set() = 0;

    /// Takes the signal back. \return whether that was possible.
    virtual bool reset() = 0;

    /// Waits for the event.
    /// \param timeout in seconds: negative waits without limit, 0 tests and returns at once, anything else is cut to whole
    ///        milliseconds.
    /// \return whether it was signalled.
    virtual bool ask(double timeout) = 0;

    /// The name by which the system knows the event.
    virtual char const* eventName() const = 0;
};

} // namespace brvUtils
