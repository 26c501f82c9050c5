#pragma once

#include "brvUtils/export.h"

#include <cstddef>

namespace brvUtils {

class IEvent;

/// Several events that are waited for together. The events are not owned. A group is filled before it is used:
/// addEvent must not run beside an ask of the same group.
class BRVUTILS_API IEventGroup
{
public:
    virtual ~IEventGroup();

    /// Appends an event, which must outlive its use here. \return whether the group takes events of that class.
    virtual bool addEvent(IEvent* event) = 0;

    /// Waits for one of the events, or for all of them.
    /// \param timeout in seconds, as for IEvent::ask.
    /// \param waitAll whether all must be signalled at once.
    /// \return the first signalled event in the order of adding; with `waitAll` the first event of the group; null when
    ///         the time is over, the wait failed or the group is empty.
    virtual IEvent* ask(double timeout, bool waitAll) = 0;

    /// The number of events added so far.
    virtual std::size_t eventCount() = 0;
};

} // namespace brvUtils
