#pragma once

#include "brvUtils/os/Error.h"

#include <string>

namespace brvUtils::os {

// Texts that all processes of this computer share, under a key and a name. All UTF-8; of texts and names what follows a zero
// is cut. Folders of a key are separated by `\`, with none at its ends and one between two. Any thread and any process at
// any time.

/// Stores the text when the key is new, and then gets what is stored under the name. A key is new when it holds nothing: one
/// that was made by a process that was killed before it stored the text is.
/// \param text as it was after an error.
/// \return error::fileNotFound when there is no such name in the key; error::invalidData when it has no text there, or one of
///         more than 255 bytes; whatever the system says when it refuses.
ErrorCode machineSetting(const std::string& subKey, const std::string& name, std::string& text);

/// Removes a key and all that it holds. For tests.
ErrorCode removeMachineSettings(const std::string& subKey);

} // namespace brvUtils::os
