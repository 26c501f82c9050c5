#pragma once

#include "ModuleShm.h"
#include "TrafficState.h"

namespace suite {

/// What the traffic shares with the other modules. Whoever comes first makes it; the traffic alone writes. One thread at a
/// time per object.
class TrafficShm : public ModuleShm
{
public:
    /// \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    TrafficShm()
        : ModuleShm("Traffic", sizeof(TrafficState), layoutVersion)
    {
        if (!addParts(state_)) {
            throw brvUtils::ConfigurationError("what the traffic tells cannot be shared");
        }
    }

    /// Traffic: shows it. False when that was not possible.
    bool tell(const TrafficState& state)
    {
        state_.value = state;
        return write(state_);
    }

    /// Others: look at it. False when that was not possible; what is returned is then what was read before.
    bool look(TrafficState& state)
    {
        const bool done = read(state_);
        state = state_.value;
        return done;
    }

private:
    static constexpr short layoutVersion = 1;

    ValuePart<TrafficState, 1> state_;
};

} // namespace suite
