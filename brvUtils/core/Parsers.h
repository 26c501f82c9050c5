#pragma once

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "brvUtils/export.h"

/// Lists of numbers in text. Any thread may call these.
namespace brvUtils::Parsers {

/// A text does not follow its grammar. The message is what came before the fault, and a caret.
struct BRVUTILS_API ParseError : std::runtime_error
{
    /// \param beforeFault the text up to the fault.
    explicit ParseError(const std::string& beforeFault) : std::runtime_error(beforeFault + "^") {}
};

/// The numbers in `text`, in order, separated by blanks, commas or semicolons; the decimal point is '.' in every locale.
/// The list ends before the first thing that is no number, such as "inf" or "nan", or a number too large for a float.
BRVUTILS_API std::vector<float> parseFloats(const std::string& text);

/// The pages that a selection such as "1-3;5" names: pages and ranges separated by ";", blanks allowed around both. A
/// range holds both its ends, whichever is written first. Empty text names no page. Throws `ParseError` with the text up
/// to the first character that cannot belong. Each page takes its place in memory, so that a range such as "0-4294967295"
/// asks for hundreds of gigabytes: look at the length of what strangers ask for.
BRVUTILS_API std::set<unsigned int> parsePrintPages(const std::string& text);

} // namespace brvUtils::Parsers
