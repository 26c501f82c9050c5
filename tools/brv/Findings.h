#pragma once

#include "Answer.h"

#include <string>
#include <vector>

namespace brvTool {

/// How a thing that was looked at is.
enum class Verdict { ok, warning, problem };

/// One of them, and what is to be done about it.
struct Finding
{
    Verdict verdict = Verdict::ok;
    std::string subject; ///< What was looked at, in a word or two.
    std::string text;
    std::string remedy = {}; ///< What one types or edits; empty when nothing is to be done.
    std::string where = {}; ///< FILE:LINE, when it is about one.
};

using Findings = std::vector<Finding>;

/// The findings one below the other, and a line that counts them. "findings" and "problems", "warnings" in the document.
Answer answerOf(const Findings& findings);

/// somethingIsWrong when one of them is a problem; warnings are good.
int exitCodeOf(const Findings& findings);

} // namespace brvTool
