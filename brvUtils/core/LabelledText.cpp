#include "brvUtils/core/LabelledText.h"

#include <cstring>
#include <iostream>

namespace brvUtils {
namespace {

constexpr std::size_t wordSize = 256;

/// Limits the words that are read. The stream itself forgets the limit only after it has read one.
class WordLimit
{
public:
    explicit WordLimit(std::istream& stream) : stream_(stream) { stream.width(wordSize); }
    ~WordLimit() { stream_.width(0); }
    WordLimit(const WordLimit&) = delete;
    WordLimit& operator=(const WordLimit&) = delete;

private:
    std::istream& stream_;
};

std::istream::pos_type positionIn(std::istream& stream)
{
    try {
        return stream.tellg();
    } catch (...) {
        return -1;
    }
}

void goBack(std::istream& stream, std::istream::pos_type start)
{
    if (start == std::istream::pos_type(-1)) {
        stream.setstate(std::ios::failbit);
    } else {
        stream.clear();
        stream.seekg(start);
    }
}

} // namespace

bool loadLabel(std::istream& stream, const char* expected, char* found, int quiet)
{
    char word[wordSize] = "";
    {
        const WordLimit limit(stream);
        stream >> word;
    }
    if (found != nullptr) {
        std::strcpy(found, word);
    }
    if (std::strcmp(word, expected) == 0) {
        return true;
    }
    if (quiet == 0) {
        std::cerr << "Error with tag in file: " << expected << " expected but " << word << " found." << std::endl;
    }
    return false;
}

bool loadLabel(std::istream& stream, const std::string& expected, std::string& found, int quiet)
{
    char word[wordSize];
    if (loadLabel(stream, expected.c_str(), word, quiet)) {
        return true;
    }
    found = word;
    return false;
}

bool loadLabelTry(std::istream& stream, const char* expected, char* found, int quiet)
{
    const std::istream::pos_type start = positionIn(stream);
    const std::ios::iostate throwing = stream.exceptions();
    try {
        if (loadLabel(stream, expected, found, quiet)) {
            return true;
        }
    } catch (...) {
        // A word that cannot be read is another word.
    }
    stream.exceptions(std::ios::goodbit);
    goBack(stream, start);
    try {
        stream.exceptions(throwing);
    } catch (const std::ios::failure&) {
        // Of a stream that stays failed; the next reading throws again.
    }
    return false;
}

bool loadLabelTry(std::istream& stream, const std::string& expected, std::string& found, int quiet)
{
    char word[wordSize];
    if (!loadLabelTry(stream, expected.c_str(), word, quiet)) {
        return false;
    }
    found = word;
    return true;
}

bool skipEndSection(std::istream& stream)
{
    std::size_t depth = 1;
    for (std::string word; stream >> word;) {
        if (word == "{") {
            ++depth;
        } else if (word == "}" && --depth == 0) {
            return true;
        }
    }
    return false;
}

} // namespace brvUtils
