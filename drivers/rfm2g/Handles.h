#pragma once

#include "rfm2g/Card.h"

#include <shared_mutex>
#include <unordered_map>

namespace softwareCard {

/// The open cards of this process. A handle is a number that is never given again, so that one that was closed is known.
/// Any thread may call any function.
class Handles
{
public:
    /// Lives as long as the process: threads of the driver may be at work to its very end.
    static Handles& instance();

    brvUtils::rfm2g::Handle add(std::unique_ptr<Member> member);
    /// Null when there is no such card, or no longer.
    std::shared_ptr<Card> find(brvUtils::rfm2g::Handle handle) const;
    /// Finds it for the last time.
    std::shared_ptr<Card> remove(brvUtils::rfm2g::Handle handle);

private:
    mutable std::shared_mutex mutex_;
    std::uintptr_t last_ = 0;
    std::unordered_map<brvUtils::rfm2g::Handle, std::shared_ptr<Card>> cards_;
};

} // namespace softwareCard
