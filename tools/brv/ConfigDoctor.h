#pragma once

#include "ConfigChoice.h"
#include "Findings.h"

namespace brvTool {

/// What is wrong with the lists and with the configurations that they declare, or with the one that is chosen. Selects
/// nothing. \throw Fault when there is none of that name.
Findings examineConfigurations(const ConfigChoice& choice);

/// The same of a "shm.cfg".
void examineSegments(Findings& findings, const std::string& subject, const std::string& file);

/// The lines of a file that are ignored or replaced by later ones.
void examineLines(Findings& findings, const std::string& subject, const std::string& file);

} // namespace brvTool
