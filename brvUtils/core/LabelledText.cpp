#include "brvUtils/core/LabelledText.h"

#include <cstring>
#include <iomanip>
#include <iostream>

namespace brvUtils {
namespace {

constexpr std::size_t wordSize = 256;

} // namespace

bool loadLabel(std::istream& stream, const char* expected, char* found, int quiet)
{
    char word[wordSize] = "";
    stream >> std::setw(wordSize) >> word;
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
    const std::istream::pos_type nowhere = -1;
    std::istream::pos_type start = nowhere;
    const std::ios::iostate throwing = stream.exceptions();
    try {
        start = stream.tellg();
        if (loadLabel(stream, expected, found, quiet)) {
            return true;
        }
        stream.seekg(start);
    } catch (...) {
        stream.exceptions(std::ios::goodbit);
        stream.clear();
        if (start != nowhere) {
            stream.seekg(start);
            stream.clear();
        }
        stream.exceptions(throwing);
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
