#pragma once

#include "brvUtils/ipc/IEventGroup.h"

#include <vector>

namespace brvUtils {

namespace os {
struct Event;
}

/// A group of EventWin32. The system waits on at most 64 at once: asking a larger group fails.
class BRVUTILS_API EventGroupWin32 : public IEventGroup
{
public:
    ~EventGroupWin32() override;

    /// As IEventGroup::addEvent; takes EventWin32 only, and the same one as often as it is given.
    bool addEvent(IEvent* event) override;

    /// As IEventGroup::ask. A failed wait prints a line to the standard output.
    IEvent* ask(double timeout, bool waitAll) override;

    std::size_t eventCount() override;

    /// An empty group; the caller owns it.
    static IEventGroup* New();

private:
    std::vector<IEvent*> events_;
    std::vector<os::Event*> handles_; ///< Of the events, in the same order.
};

} // namespace brvUtils
