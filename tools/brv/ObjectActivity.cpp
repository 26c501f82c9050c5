#include "ObjectActivity.h"

#include <algorithm>
#include <thread>

namespace brvTool {

using brvUtils::NamedObject;

ObjectActivity::Track& ObjectActivity::trackOf(const NamedObject& object)
{
    return tracks_.try_emplace(object.name, Track{object, {}, 0, std::nullopt, round_}).first->second;
}

void ObjectActivity::look()
{
    latest_ = brvUtils::lookAtNamedObjects(true);
    auto& objects = latest_.objects;
    objects.erase(std::remove_if(objects.begin(), objects.end(), [this](const NamedObject& object) { return !wanted_(object); }), objects.end());
    ++round_;
    for (const NamedObject& object : latest_.objects) {
        Track& track = trackOf(object);
        if (const std::uint64_t changes = changesBetween(track.object, object); changes != 0 && track.object.kind == object.kind) {
            track.changes += changes;
            track.lastChange = Clock::now();
        }
        track.object = object;
        track.round = round_;
    }
    for (auto track = tracks_.begin(); track != tracks_.end();) {
        track = track->second.round != round_ ? tracks_.erase(track) : std::next(track);
    }
}

void ObjectActivity::lookAtSegments()
{
    for (const NamedObject& object : latest_.objects) {
        if (object.kind != NamedObject::Kind::segment) {
            continue;
        }
        Track& track = trackOf(object);
        const brvUtils::SegmentGlance content = brvUtils::glanceAtSegment(object.name);
        if (track.content.seen && content.seen && content.fingerprint != track.content.fingerprint) {
            ++track.changes;
            track.lastChange = Clock::now();
        }
        track.content = content;
    }
}

void ObjectActivity::lookFor(double seconds, const volatile bool* stop)
{
    constexpr std::chrono::duration<double> shortest{0.005};
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    if (round_ == 0) {
        look();
        lookAtSegments();
    }
    while (Clock::now() < end && (stop == nullptr || !*stop)) {
        const auto before = Clock::now();
        look();
        const std::chrono::duration<double> cost = Clock::now() - before;
        const std::chrono::duration<double> rest = end - Clock::now();
        std::this_thread::sleep_for(std::min(rest, std::max(shortest, 10 * cost)));
    }
    look();
    lookAtSegments();
}

void ObjectActivity::startPeriod()
{
    for (auto& [name, track] : tracks_) {
        track.changes = 0;
    }
}

ObjectActivity::Seen ObjectActivity::of(const NamedObject& object) const
{
    const auto found = tracks_.find(object.name);
    if (found == tracks_.end()) {
        return {};
    }
    const Track& track = found->second;
    Seen seen;
    seen.changes = track.changes;
    if (track.lastChange) {
        seen.age = std::chrono::duration<double>(Clock::now() - *track.lastChange).count();
    }
    return seen;
}

} // namespace brvTool
