#include "rfm2g/Handles.h"

#include <mutex>

namespace softwareCard {

Handles& Handles::instance()
{
    static Handles* const handles = new Handles;
    return *handles;
}

brvUtils::rfm2g::Handle Handles::add(std::unique_ptr<Member> member)
{
    const std::unique_lock lock(mutex_);
    auto* const handle = reinterpret_cast<brvUtils::rfm2g::Handle>(++last_);
    cards_.emplace(handle, std::make_shared<Card>(std::move(member), handle));
    return handle;
}

std::shared_ptr<Card> Handles::find(brvUtils::rfm2g::Handle handle) const
{
    const std::shared_lock lock(mutex_);
    const auto found = cards_.find(handle);
    return found != cards_.end() ? found->second : nullptr;
}

std::shared_ptr<Card> Handles::remove(brvUtils::rfm2g::Handle handle)
{
    const std::unique_lock lock(mutex_);
    const auto found = cards_.find(handle);
    if (found == cards_.end()) {
        return nullptr;
    }
    std::shared_ptr<Card> card = std::move(found->second);
    cards_.erase(found);
    return card;
}

} // namespace softwareCard
