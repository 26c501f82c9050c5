#pragma once

#include <map>
#include <string>

#include <Utilities/export.h>

/// What the suite asks about the system that it runs on. Every function may be called from any thread.
namespace Utilities::System {

/// Name of the user that the process runs as, in UTF-8: the same text in every process of that user.
/// Where the system knows no name for the user it is the user's number; empty only when the system refuses to answer.
UTILITIES_API std::string GetEffectiveUserName();

/// How references to variables are written in configuration files and paths: what stands before the name, a `*` for the
/// name, and what stands behind it.
constexpr const char* DaemonVariableMatchingPattern = "${*}";

/// Puts values in place of the references to variables in `text`, also of those inside values. References look as
/// `pattern` says; without a `*` in it there are none. A variable is looked up in `variables` first and then in the
/// environment; names and values are UTF-8. A reference to one that is in neither stays as it is.
///
/// `result` may be `text` itself. False when a reference stays, and when values refer to each other in a circle or never
/// come to an end (1,000 references or a MiB more of text): `result` is then `text` unchanged.
UTILITIES_API bool ExpandLocalEnvironmentVariables(const std::string& text, std::string& result, const std::string& pattern,
    const std::map<std::string, std::string>& variables);

} // namespace Utilities::System
