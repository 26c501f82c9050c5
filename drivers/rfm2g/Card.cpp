#include "rfm2g/Card.h"

#include "rfm2g/System.h"

#include <algorithm>

namespace softwareCard {

namespace {

constexpr auto fifoFull = static_cast<unsigned>(Event::fifoFull);

} // namespace

Card::Card(std::unique_ptr<Member> member, brvUtils::rfm2g::Handle handle) : member_(std::move(member)), handle_(handle) {}

Card::~Card() = default;

void Card::close()
{
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        thread.swap(thread_);
    }
    member_->wake();
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();
    } else if (thread.joinable()) {
        thread.join();
    }
}

void Card::enable(Event event)
{
    const std::lock_guard lock(mutex_);
    if (member_->hasEnabled(event)) {
        return;
    }
    member_->enable(event);
    drop(event);
}

void Card::clear(Event event)
{
    const std::lock_guard lock(mutex_);
    drop(event);
}

/// Those of before are not told.
void Card::drop(Event event)
{
    const auto kind = static_cast<unsigned>(event);
    if (kind < sentKinds) {
        positions_[kind] = member_->log().end();
    } else if (kind == fifoFull) {
        overwritten_ = 0;
    }
}

Card::Status Card::setCallback(Event event, brvUtils::rfm2g::Callback callback)
{
    const std::lock_guard lock(mutex_);
    if (closing_) {
        return Status::notOpen;
    }
    if (!thread_.joinable()) {
        stayLoaded();
        thread_ = startThread([self = shared_from_this()] { self->listen(); });
    }
    callbacks_[static_cast<unsigned>(event)] = callback;
    // There may be work from before.
    member_->wake();
    return Status::success;
}

bool Card::isListened(unsigned kind) const
{
    return callbacks_[kind] != nullptr && member_->hasEnabled(static_cast<Event>(kind));
}

void Card::listen()
{
    Delivery delivery{};
    while (!closing_) {
        bool found = next(delivery);
        if (!found) {
            member_->fallAsleep();
            found = next(delivery);
            if (!found && !closing_) {
                member_->sleep();
            }
            member_->stayAwake();
        }
        if (found && !closing_) {
            delivery.callback(handle_, &delivery.info);
        }
    }
}

/// The next event that is to be told, if any, is taken from what waits.
bool Card::next(Delivery& delivery)
{
    const std::lock_guard lock(mutex_);
    EventLog& log = member_->log();
    for (;;) {
        if (overwritten_ != 0 && isListened(fifoFull)) {
            delivery = {callbacks_[fifoFull], {overwritten_, Event::fifoFull, 0, member_->node(), nullptr}};
            overwritten_ = 0;
            return true;
        }
        // Kinds may have been enabled, or got their callbacks, at different times.
        std::array<bool, sentKinds> listened{};
        std::uint64_t position = UINT64_MAX;
        for (unsigned kind = 0; kind < sentKinds; ++kind) {
            listened[kind] = isListened(kind);
            position = listened[kind] ? std::min(position, positions_[kind]) : position;
        }
        SentEvent event{};
        const EventLog::Found found = position == UINT64_MAX ? EventLog::Found::nothing : log.read(position, event);
        if (found == EventLog::Found::nothing) {
            return false;
        }
        const bool gap = found == EventLog::Found::gap;
        const std::uint64_t goOn = gap ? log.behindGap(position) : position + 1;
        const bool told = !gap && event.reaches(member_->node()) && listened[event.kind] && positions_[event.kind] == position;
        overwritten_ += gap ? static_cast<std::uint32_t>(goOn - position) : 0;
        for (unsigned kind = 0; kind < sentKinds; ++kind) {
            positions_[kind] = listened[kind] ? std::max(positions_[kind], goOn) : positions_[kind];
        }
        if (told) {
            delivery = {callbacks_[event.kind], {event.data, static_cast<Event>(event.kind), 0, event.from, nullptr}};
            return true;
        }
    }
}

} // namespace softwareCard
