#pragma once

#include "DrivingCycle.h"

#include <filesystem>
#include <istream>
#include <string>

/// \file
/// Driving cycles as labelled text, see data/cycles/ece15.txt.

namespace suite {

/// Reads a driving cycle from a file.
/// \param place the file, or the folder that holds "ece15.txt".
/// \throw brvUtils::FileError when it cannot be read or is damaged; the text names the file, the line and what is wrong
///        there.
DrivingCycle loadCycle(const std::filesystem::path& place);

/// The same from a stream. \param fileName what messages call the file.
DrivingCycle readCycle(std::istream& stream, const std::string& fileName);

} // namespace suite
