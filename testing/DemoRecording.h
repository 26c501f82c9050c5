#pragma once

#include <string>

namespace brvTesting {

/// The recording that the examples come with: 30 s on a country road, ten rows a second. The vehicle overtakes a truck while
/// a motorbike, two cars, a cyclist and somebody on foot come into sight and leave it again: six objects in all.
///
/// The same bytes on every system: whoever changes them lets make_demo_recording write the file anew.
std::string demoRecording();

} // namespace brvTesting
