#pragma once

#include "Command.h"
#include "ObjectActivity.h"

#include <string>
#include <vector>

namespace brvTool {

/// Whose objects are shown.
struct ObjectChoice
{
    std::string instance; ///< In UTF-8.
    bool all = false; ///< Of all instances; on Windows of all programs of the session, too.

    bool takes(const brvUtils::NamedObject& object) const;
    std::string none() const; ///< What people see when there are no such objects.
};

/// Adds the options. \param choice lives as long as the program.
void addObjectChoice(CLI::App& command, ObjectChoice& choice);

/// What `brv ipc` does below it. \throw Fault as all commands.
/// @{
int listObjects(Output& output, const ObjectChoice& choice, double sampleSeconds);
int showObject(Output& output, const ObjectChoice& choice, const std::string& name);
int watchObjects(Output& output, const ObjectChoice& choice, double interval, int count);
int repairLocks(Output& output, const ObjectChoice& choice, bool withoutAsking);
/// @}

} // namespace brvTool
