#pragma once

#include <istream>
#include <string>

#include "brvUtils/export.h"

/// \file
/// Labelled text files: words between blanks, where a label names the value that follows, and "{" and "}" enclose
/// sections. A stream belongs to one thread at a time.

namespace brvUtils {

/// Reads the next word, at most 255 characters of it, and tells whether it is `expected`. If not, and unless `quiet` is
/// non-zero, a line on the standard error stream names both. The word stays read. `found` is null or a buffer of 256
/// characters that receives the word; it is empty when the stream has ended.
BRVUTILS_API bool loadLabel(std::istream& stream, const char* expected, char* found, int quiet);

/// The same; kept for callers, `found` receives the word only when it is another one.
BRVUTILS_API bool loadLabel(std::istream& stream, const std::string& expected, std::string& found, int quiet);

/// `loadLabel` that reads nothing when it fails: after another word, at the end of the text, and after an exception of the
/// stream, which is not passed on, the stream is good and back where it was, and the result is false. A stream that had
/// met its end or failed before, or that cannot seek, is left failed.
BRVUTILS_API bool loadLabelTry(std::istream& stream, const char* expected, char* found, int quiet);

/// The same; kept for callers, `found` receives the word only when it is the expected one, in contrast to `loadLabel`.
BRVUTILS_API bool loadLabelTry(std::istream& stream, const std::string& expected, std::string& found, int quiet);

/// Reads on to the "}" that closes the current section, over all sections inside it. True when that brace was read, also
/// as the very last character; false when the stream ended or failed before.
BRVUTILS_API bool skipEndSection(std::istream& stream);

} // namespace brvUtils
