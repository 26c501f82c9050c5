#pragma once

#include "ModuleShm.h"

#include <cstdint>
#include <string>

namespace suite {

/// How regular a module's beat is, told by the module twice a second. The jitter is how far intervals between beats are off
/// their median, of the last 1000 of them. These are the bytes in shared memory, on every system.
struct Beat
{
    std::int64_t process = 0; ///< The number of the module's process; 0: none has started yet.
    std::int64_t beats = 0; ///< That the module took so far.
    double rate = 0.0; ///< Beats per second, since the time before.
    double lastInterval = 0.0; ///< Seconds between the last two.
    double jitterMedian = 0.0; ///< Seconds, as the two that follow.
    double jitter99 = 0.0; ///< What 99 of 100 intervals do not exceed.
    double jitterMax = 0.0;
    std::int64_t ended = 0; ///< 1: the module has done its work. One that is killed has no time to say so.
};
static_assert(sizeof(Beat) == 64, "no gaps, so that every compiler lays it out alike");

/// The segment in which a module shows its beat. Whoever comes first makes it; the module alone writes. One thread at a time
/// per object.
class BeatShm : public ModuleShm
{
public:
    /// \param module its name. \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    explicit BeatShm(const std::string& module)
        : ModuleShm(module + "Beat", sizeof(Beat), layoutVersion)
    {
        if (!addParts(beat_)) {
            throw brvUtils::ConfigurationError("what " + module + " tells of its beat cannot be shared");
        }
    }

    /// Module: shows it. False when that was not possible.
    bool tell(const Beat& beat)
    {
        beat_.value = beat;
        return write(beat_);
    }

    /// Others: look at it. False when that was not possible; what is returned is then what was read before.
    bool look(Beat& beat)
    {
        const bool done = read(beat_);
        beat = beat_.value;
        return done;
    }

private:
    static constexpr short layoutVersion = 1;

    ValuePart<Beat, 1> beat_;
};

} // namespace suite
