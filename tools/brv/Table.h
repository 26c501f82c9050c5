#pragma once

#include "Answer.h"

#include <string>

namespace brvTool {

/// How people see an answer.
struct TableStyle
{
    int width = 100; ///< Columns that there are; long texts go on in the next line.
    bool colour = false;
};

/// The answer as lines, each with its end. Numbers stand right, everything else left. Control characters that the values
/// contain come out as "?".
std::string toText(const Answer& answer, const TableStyle& style);

/// The text with a "?" in place of each control character: names in files may hold what a terminal obeys.
std::string printable(std::string text);

} // namespace brvTool
