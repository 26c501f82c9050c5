#pragma once

#include "ModuleShm.h"
#include "SensorView.h"

namespace suite {

/// What the sensor shares with the other modules. Whoever comes first makes it; the sensor alone writes. One thread at a time
/// per object.
class SensorShm : public ModuleShm
{
public:
    /// \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    SensorShm()
        : ModuleShm("Sensor", sizeof(SensorView), layoutVersion)
    {
        if (!addParts(view_)) {
            throw brvUtils::ConfigurationError("what the sensor tells cannot be shared");
        }
    }

    /// Sensor: shows it. False when that was not possible.
    bool tell(const SensorView& view)
    {
        view_.value = view;
        return write(view_);
    }

    /// Others: look at it. False when that was not possible; what is returned is then what was read before.
    bool look(SensorView& view)
    {
        const bool done = read(view_);
        view = view_.value;
        return done;
    }

private:
    static constexpr short layoutVersion = 1;

    ValuePart<SensorView, 1> view_;
};

} // namespace suite
