#include "brvUtils/ipc/ShmVmic.h"

#include <condition_variable>

// Which segment listens on which interrupt. Calls come on threads of the driver, also while a segment is destroyed and while
// the process ends: what they need of the class is never destroyed, and a segment waits for those under way.

namespace brvUtils {

namespace {

std::mutex& registryMutex = *new std::mutex;
std::condition_variable& callEnded = *new std::condition_variable;

} // namespace

std::map<int, ShmVmic*>& ShmVmic::ourInstances = *new std::map<int, ShmVmic*>;

std::string ShmVmic::holderOf(int interrupt)
{
    const std::lock_guard lock(registryMutex);
    const auto entry = ourInstances.find(interrupt);
    return entry != ourInstances.end() && entry->second != nullptr ? entry->second->name_ : "";
}

void ShmVmic::enroll()
{
    const std::lock_guard lock(registryMutex);
    ourInstances[interrupt_] = this;
}

void ShmVmic::resign()
{
    std::unique_lock lock(registryMutex);
    const auto entry = ourInstances.find(interrupt_);
    if (entry != ourInstances.end() && entry->second == this) {
        entry->second = nullptr;
        callEnded.wait(lock, [this] { return calls_ == 0; });
    }
}

void ShmVmic::onEvent(rfm2g::Handle, rfm2g::EventInfo* info)
{
    if (info == nullptr || info->data >= static_cast<std::uint32_t>(partCount)) {
        return; // no part has that number
    }
    std::unique_lock lock(registryMutex);
    const auto entry = ourInstances.find(static_cast<int>(info->event));
    if (entry == ourInstances.end() || entry->second == nullptr) {
        return;
    }
    ShmVmic& segment = *entry->second;
    ++segment.calls_;
    lock.unlock();
    segment.callback(static_cast<int>(info->data));
    lock.lock();
    if (--segment.calls_ == 0) {
        callEnded.notify_all();
    }
}

} // namespace brvUtils
