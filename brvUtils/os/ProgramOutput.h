#pragma once

#include "brvUtils/os/Error.h"

#include <string_view>

namespace brvUtils::os {

/// The standard output of a program that keeps it for itself (opaque).
struct OwnOutput;

/// Keeps the standard output for writeOwnOutput alone: what else of this process writes to it goes to the error stream from
/// now on, or nowhere. Null with error::invalidHandle where the process has no such stream, or with error::tooManyOpenFiles;
/// nothing has changed then.
OwnOutput* takeStandardOutput(bool othersToErrorStream, ErrorCode& error) noexcept;

/// Gives the stream back. Null is passed over.
void giveStandardOutputBack(OwnOutput* output) noexcept;

/// Writes all of it at once, without a buffer; a console shows UTF-8.
ErrorCode writeOwnOutput(OwnOutput* output, std::string_view text) noexcept;

/// Columns of the terminal that shows the output; 0 when it is none.
int ownOutputWidth(const OwnOutput* output) noexcept;

} // namespace brvUtils::os
