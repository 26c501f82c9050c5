#pragma once

#include <string>
#include <vector>

namespace brvUtils::os {

/// The arguments of `main`, the program first, in UTF-8 and without a loss, also where `main` gets them in a code page that
/// lacks some of their characters.
std::vector<std::string> utf8Arguments(int argc, char** argv);

} // namespace brvUtils::os
