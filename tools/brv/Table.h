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

} // namespace brvTool
