#pragma once

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>

/// A row of the supervisor's table.
struct SupervisorRow
{
    std::string module;
    std::uint32_t process = 0;
    std::string state;
    std::string note; ///< What stands behind the state.

    bool shows(const std::string& name, const std::string& stateNow) const { return module == name && state == stateNow; }
};

/// The row in a line, if it is one.
inline std::optional<SupervisorRow> supervisorRow(const std::string& line)
{
    std::istringstream words(line);
    std::string me;
    double wall = 0.0;
    SupervisorRow row;
    words >> me >> wall >> row.module >> row.process >> row.state;
    if (!words || me != "supervisor:") {
        return std::nullopt;
    }
    std::getline(words >> std::ws, row.note);
    return row;
}
