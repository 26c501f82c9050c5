#pragma once

#include <string>
#include <vector>

namespace brvUtils::os {

/// Something of the system that modules depend on.
struct SystemFact
{
    enum class State { good, warning, problem };

    State state = State::good;
    std::string subject; ///< In a word or two.
    std::string text; ///< UTF-8.
    std::string remedy = {}; ///< What an administrator types or edits; empty when nothing is to be done.
};

/// Looks at memory, limits, rights, timers, named objects and the card's driver of this computer and user. Changes nothing but
/// that the driver is loaded and unloaded.
std::vector<SystemFact> systemFacts();

/// Whether the driver of a reflective-memory card can be loaded.
SystemFact cardDriverFact();

} // namespace brvUtils::os
