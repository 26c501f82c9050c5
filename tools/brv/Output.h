#pragma once

#include "Answer.h"

#include <brvUtils/platform/ProgramOutput.h>

#include <stdexcept>
#include <string>

namespace brvTool {

/// A command cannot be done; the text tells a user why, in one line.
struct Fault : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Where commands put their answers: nothing else comes to the standard output, what the library prints neither.
class Output
{
public:
    /// What the command line chooses.
    struct Choices
    {
        bool json = false;
        bool verbose = false; ///< What the library prints goes to the error stream.
    };

    explicit Output(const Choices& choices);

    /// Shows a whole answer: a table, or a document of several lines. Once per run.
    void show(const Answer& answer);
    /// Shows one of several answers: a table, or a document in a line of its own.
    void showNext(const Answer& answer);
    /// Text for people as it is. \throw Fault "the output cannot be written".
    void write(const std::string& text);
    /// A fault: a line on the error stream and, for programs, the document {"error": text}.
    void complain(const std::string& text);

    /// Programs read the output.
    bool json() const { return json_; }
    /// Columns of the terminal; 0 when it is none.
    int terminalWidth() const { return output_.terminalWidth(); }
    /// Columns that a table has.
    int width() const;

private:
    std::string textOf(const Answer& answer) const;

    brvUtils::ProgramOutput output_;
    bool json_;
};

} // namespace brvTool
