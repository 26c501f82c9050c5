#include "brvUtils/ipc/EventWin32.h"

#include "brvUtils/ipc/internal/NewOrNull.h"
#include "brvUtils/ipc/internal/Timeout.h"
#include "brvUtils/os/Event.h"
#include "brvUtils/startup/InstanceKey.h"

#include <cstdio>

namespace brvUtils {

IEvent::~IEvent() = default;

EventWin32::EventWin32(char const* name, bool manualReset, bool initiallySet)
    : name_(buildKeyWithInstance(name))
    , handle_(os::openEvent(name_.c_str(), manualReset, initiallySet).event)
{
    if (handle_ == nullptr) {
        std::printf("ERROR opening/creating EventWin32: %s\n", name_.c_str());
    }
}

EventWin32::~EventWin32()
{
    os::closeEvent(handle_);
}

bool EventWin32::set()
{
    return os::setEvent(handle_) == os::error::none;
}

bool EventWin32::reset()
{
    return os::resetEvent(handle_) == os::error::none;
}

bool EventWin32::ask(double timeout)
{
    const os::WaitResult result = os::waitEvent(handle_, toMilliseconds(timeout));
    switch (result.status) {
    case os::WaitStatus::signalled:
        return true;
    case os::WaitStatus::timedOut:
        return false;
    case os::WaitStatus::failed:
        std::printf("Error waiting EventWin32 %s : %d\n", name_.c_str(), static_cast<int>(result.error));
        return false;
    default:
        std::printf("Error waiting EventWin32 %s : Unkown error\n", name_.c_str()); // spelling kept for callers
        return false;
    }
}

char const* EventWin32::eventName() const
{
    return name_.c_str();
}

void* EventWin32::getHandle() const
{
    return handle_;
}

IEvent* EventWin32::New(char const* name, bool manualReset, bool initiallySet)
{
    return newOrNull<EventWin32>(name, manualReset, initiallySet);
}

} // namespace brvUtils
