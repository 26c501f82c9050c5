#include "brvUtils/ipc/EventGroupWin32.h"

#include "brvUtils/ipc/EventWin32.h"
#include "brvUtils/ipc/internal/NewOrNull.h"
#include "brvUtils/ipc/internal/Timeout.h"
#include "brvUtils/os/Event.h"

#include <cstdio>

namespace brvUtils {

IEventGroup::~IEventGroup() = default;
EventGroupWin32::~EventGroupWin32() = default;

bool EventGroupWin32::addEvent(IEvent* event)
{
    const auto* known = dynamic_cast<EventWin32*>(event);
    if (known == nullptr) {
        return false;
    }
    events_.push_back(event);
    handles_.push_back(static_cast<os::Event*>(known->getHandle()));
    return true;
}

IEvent* EventGroupWin32::ask(double timeout, bool waitAll)
{
    if (handles_.empty()) {
        return nullptr;
    }
    std::size_t index = 0;
    const os::WaitResult result = os::waitEvents(handles_.data(), handles_.size(), waitAll, toMilliseconds(timeout), &index);
    if (result.status == os::WaitStatus::signalled) {
        return events_[waitAll ? 0 : index];
    }
    if (result.status == os::WaitStatus::failed) {
        std::printf("Error waiting Multiple EventWin32 : %d\n", static_cast<int>(result.error));
    }
    return nullptr;
}

std::size_t EventGroupWin32::eventCount()
{
    return events_.size();
}

IEventGroup* EventGroupWin32::New()
{
    return newOrNull<EventGroupWin32>();
}

} // namespace brvUtils
