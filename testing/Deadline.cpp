#include "testing/Deadline.h"

#include <cstdio>
#include <cstdlib>

namespace brvTesting {

Deadline::Deadline(std::string block, std::chrono::milliseconds limit)
    : block_(std::move(block)), thread_([this, limit] { watch(limit); })
{
}

Deadline::~Deadline()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

void Deadline::watch(std::chrono::milliseconds limit)
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (!ended_.wait_for(lock, limit, [this] { return over_; })) {
        std::fprintf(stderr, "\"%s\" did not end within %lld ms\n", block_.c_str(), static_cast<long long>(limit.count()));
        std::fflush(stderr);
        std::abort();
    }
}

} // namespace brvTesting
