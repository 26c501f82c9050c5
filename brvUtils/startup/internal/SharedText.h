#pragma once

#include <atomic>
#include <mutex>
#include <set>
#include <string>

namespace brvUtils {

/// A text that threads may read by reference while another one changes it: each text that it ever held lives on. For the
/// few texts that change a few times in the life of a process.
class SharedText
{
public:
    const std::string& get() const { return *text_.load(std::memory_order_acquire); }

    const std::string& set(const std::string& text)
    {
        const std::lock_guard guard(mutex_);
        const std::string& kept = *texts_.insert(text).first;
        text_.store(&kept, std::memory_order_release);
        return kept;
    }

    bool empty() const { return get().empty(); }

private:
    std::mutex mutex_;
    std::set<std::string> texts_{std::string()};
    std::atomic<const std::string*> text_{&*texts_.begin()};
};

} // namespace brvUtils
