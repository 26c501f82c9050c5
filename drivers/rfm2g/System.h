#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

/// \file
/// What the software card needs of the system, beside files and doorbells.

namespace softwareCard {

/// What stands before the number in the path of a device.
extern const char* const devicePrefix;

std::uint32_t thisProcess();

/// The user's own folder for rings, made where it was missing. \return a problem, empty when there is none.
std::string makeDefaultFolder();

/// A thread that takes no signal from those of the program.
std::thread startThread(std::function<void()> work);

/// From now on this library stays loaded as long as the process runs: it has a thread.
void stayLoaded();

} // namespace softwareCard
