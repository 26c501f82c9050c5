#pragma once

#include <initializer_list>

namespace brvUtils {

/// What is known of a kind of module.
struct ModuleType
{
    const char* name;
    std::initializer_list<const char*> aliases; ///< Lower case.
};

/// By code. The first alias found anywhere in a text decides, lower codes first: an alias must not be part of one of a higher
/// code, or that one would never be found. Nor should it be part of common words, such as "script" of "description".
inline constexpr ModuleType moduleTypes[] = {
    {"None", {}},
    {"Supervisor", {"supervis", "launcher"}},
    {"Daemon", {"daemon"}},
    {"Vehicle dynamics", {"vehicle", "dynamics"}},
    {"Traffic", {"traffic"}},
    {"Sensor", {"sensor", "lidar", "radar", "camera"}},
    {"Recorder", {"record", "logger"}},
    {"Analysis", {"analysis", "analyser", "analyzer", "evaluation"}},
    {"Driver station", {"driver station", "driving station", "cockpit", "cabin"}},
    {"Visual", {"visual", "render", "display"}},
    {"Sound", {"sound", "audio", "acoustic"}},
    {"Motion platform", {"motion", "platform", "hexapod"}},
    {"Weather", {"weather"}},
    {"Scenario", {"scenario"}},
    {"Road and terrain", {"road", "terrain"}},
    {"Pedestrians", {"pedestrian", "crowd"}},
    {"Instrument cluster", {"instrument", "dashboard", "cluster"}},
    {"Driver monitoring", {"monitoring", "eye track", "eyetrack"}},
    {"Force feedback", {"force", "haptic", "steering"}},
    {"Network gateway", {"gateway", "bridge", "network"}},
    {"Data player", {"player", "replay"}},
    {"Test bench", {"test", "bench"}},
};

} // namespace brvUtils
