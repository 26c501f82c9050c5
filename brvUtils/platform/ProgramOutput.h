#pragma once

#include <string_view>

#include "brvUtils/export.h"

namespace brvUtils {

/// Where to what else writes to the standard output goes while a ProgramOutput lives.
enum class OtherOutput {
    nowhere,
    errorStream
};

/// The standard output of a program whose output is read by other programs: while the object lives nothing but what it writes
/// comes there, whatever this library or another one prints. One object at a time; one thread at a time.
class BRVUTILS_API ProgramOutput
{
public:
    /// Takes the stream. Where the process has none, write answers false.
    explicit ProgramOutput(OtherOutput others = OtherOutput::nowhere);
    /// Gives the stream back.
    ~ProgramOutput();
    ProgramOutput(const ProgramOutput&) = delete;
    ProgramOutput& operator=(const ProgramOutput&) = delete;

    /// Writes UTF-8 at once. False when not all of it could be written.
    bool write(std::string_view text);

    /// Columns of the terminal that shows it; 0 when it is a file, a pipe or nothing.
    int terminalWidth() const;

private:
    void* output_ = nullptr; ///< Owned.
};

} // namespace brvUtils
