#pragma once

#include <string>
#include <vector>

#include "brvUtils/export.h"

namespace brvUtils {

/// Something of this computer that modules depend on.
struct SystemFinding
{
    /// Whether modules can do with it.
    enum class State {
        good,
        warning, ///< Modules run, but not as well as they could.
        problem ///< Modules cannot run.
    };

    State state = State::good; ///< Whether modules can do with it.
    std::string subject; ///< In a word or two, such as "shared memory".
    std::string text; ///< UTF-8, one line.
    std::string remedy; ///< What an administrator types or edits; empty when nothing is to be done.
};

/// Looks at what modules need of this computer and user: space for segments, limits, the right to real-time priority, timers,
/// what removes named objects or keeps them from being made, the driver of a reflective-memory card, and the folder for crash
/// dumps. Which of them there are depends on the system. Nothing is changed, but the driver is loaded and unloaded, and a
/// file is made and removed where dumps go. Any thread; takes some milliseconds.
BRVUTILS_API std::vector<SystemFinding> systemReport();

} // namespace brvUtils
