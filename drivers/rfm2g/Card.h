#pragma once

#include "rfm2g/Member.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

namespace softwareCard {

/// An open card: a member of a ring that tells of events. Any thread may call any function.
class Card : public std::enable_shared_from_this<Card>
{
public:
    using Status = brvUtils::rfm2g::Status;
    static constexpr unsigned eventKinds = 12;

    /// \param handle what callbacks are told.
    Card(std::unique_ptr<Member> member, brvUtils::rfm2g::Handle handle);
    ~Card();
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;

    Member& member() { return *member_; }

    /// The ring is left at the end of the last call that is under way. A callback has returned, unless it is the caller.
    void close();

    void enable(Event event);
    void clear(Event event);
    Status setCallback(Event event, brvUtils::rfm2g::Callback callback);

private:
    struct Delivery
    {
        brvUtils::rfm2g::Callback callback;
        brvUtils::rfm2g::EventInfo info;
    };

    void drop(Event event);
    void listen();
    bool next(Delivery& delivery);
    bool isListened(unsigned kind) const;

    std::unique_ptr<Member> member_;
    brvUtils::rfm2g::Handle handle_;
    std::atomic<bool> closing_{false};
    std::mutex mutex_; ///< For what follows.
    std::array<brvUtils::rfm2g::Callback, eventKinds> callbacks_{};
    std::array<std::uint64_t, sentKinds> positions_{}; ///< From where on in the log events of that kind are still to be told.
    std::uint32_t overwritten_ = 0; ///< Events of the ring that were not looked at in time, and not told of.
    std::thread thread_; ///< Started with the first callback.
};

} // namespace softwareCard
