#pragma once

#include <brvUtils/ipc/NamedObjects.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace brvTool {

/// When and how often named objects change, as far as looking now and then can see it: nothing in them tells the time. What
/// goes there and back between two looks is not seen.
class ObjectActivity
{
public:
    using Clock = std::chrono::steady_clock;

    struct Seen
    {
        std::optional<double> age; ///< Seconds since the last change that was seen; none since it is looked at.
        std::uint64_t changes = 0; ///< Since the last startPeriod.
    };

    /// \param wanted which objects count.
    explicit ObjectActivity(std::function<bool(const brvUtils::NamedObject&)> wanted) : wanted_(std::move(wanted)) {}

    /// The objects as they are now become the latest look.
    void look();
    /// The bytes of all segments, which costs more.
    void lookAtSegments();
    /// Looks for so long, as often as it costs little; at segments in the end, and the first time in the beginning too.
    /// \param stop ends it early.
    void lookFor(double seconds, const volatile bool* stop = nullptr);
    /// Changes are counted from here on.
    void startPeriod();

    const brvUtils::NamedObjects& latest() const { return latest_; }
    Seen of(const brvUtils::NamedObject& object) const;

private:
    struct Track
    {
        brvUtils::NamedObject object;
        brvUtils::SegmentGlance content;
        std::uint64_t changes = 0;
        std::optional<Clock::time_point> lastChange;
        std::uint64_t round = 0;
    };
    Track& trackOf(const brvUtils::NamedObject& object);

    std::function<bool(const brvUtils::NamedObject&)> wanted_;
    brvUtils::NamedObjects latest_; ///< Those that are wanted.
    std::map<std::string, Track> tracks_;
    std::uint64_t round_ = 0;
};

} // namespace brvTool
