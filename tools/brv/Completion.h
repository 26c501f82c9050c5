#pragma once

#include "Command.h"

#include <string>
#include <vector>

namespace brvTool {

/// The script by which bash asks this program what can follow.
std::string bashCompletion();

/// What can stand in place of the last of the words: lines for that script. Names that begin with the word; ":files" or
/// ":folders" where the shell's own names of these fit.
/// \param words behind the program's name, at least one; the last one is begun, or empty.
std::vector<std::string> completionsOf(const std::vector<std::string>& words, Commands& commands);

} // namespace brvTool
