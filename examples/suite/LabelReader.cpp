#include "LabelReader.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/core/LabelledText.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace suite {

namespace {

constexpr int quiet = 1;

std::string quoted(const std::string& word)
{
    return word.empty() ? "the end of the file" : "\"" + word + "\"";
}

} // namespace

LabelReader::LabelReader(std::istream& stream, std::string name)
    : name_(std::move(name))
    , text_(std::istreambuf_iterator<char>(stream), {})
    , stream_(text_)
{
}

void LabelReader::expect(const std::string& label)
{
    std::string other;
    if (!brvUtils::loadLabel(stream_, label, other, quiet)) {
        fail("\"" + label + "\" expected but " + quoted(other) + " found");
    }
}

bool LabelReader::found(const std::string& label)
{
    std::string word;
    return brvUtils::loadLabelTry(stream_, label, word, quiet);
}

void LabelReader::skipSection()
{
    if (!brvUtils::skipEndSection(stream_)) {
        fail("a section is not closed");
    }
}

std::string LabelReader::word(const std::string& label)
{
    expect(label);
    return nextWord(label);
}

double LabelReader::number(const std::string& label)
{
    expect(label);
    return value(label);
}

int LabelReader::whole(const std::string& label, int least, int most)
{
    const double value = number(label);
    if (value < least || value > most || value != std::floor(value)) {
        fail("\"" + label + "\" needs a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return static_cast<int>(value);
}

double LabelReader::value(const std::string& label)
{
    const std::string word = nextWord(label);
    char* end = nullptr;
    const double number = std::strtod(word.c_str(), &end);
    if (*end != '\0' || !std::isfinite(number)) {
        fail("\"" + label + "\" needs a number, not \"" + word + "\"");
    }
    return number;
}

std::string LabelReader::nextWord(const std::string& label)
{
    std::string word;
    if (!(stream_ >> word)) {
        fail("\"" + label + "\" has no value");
    }
    return word;
}

void LabelReader::fail(const std::string& what)
{
    stream_.clear(); // at the end of the file it would not tell its position
    const auto line = 1 + std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(stream_.tellg()), '\n');
    throw brvUtils::FileError(name_ + ", line " + std::to_string(line) + ": " + what);
}

} // namespace suite
