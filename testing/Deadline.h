#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace brvTesting {

/// Watches a block that may hang: when the object lives longer than the limit, the process aborts with a message that
/// names the block.
///
///     Deadline deadline("8 threads on one event");
class Deadline
{
public:
    explicit Deadline(std::string block, std::chrono::milliseconds limit = std::chrono::seconds(30));
    ~Deadline();
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

private:
    void watch(std::chrono::milliseconds limit);

    std::string block_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;
    std::thread thread_; ///< Last: it uses the others.
};

} // namespace brvTesting
