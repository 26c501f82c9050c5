#include "brvUtils/data/internal/MatText.h"

namespace brvUtils {

namespace {

bool isBetween(unsigned value, unsigned first, unsigned last)
{
    return value >= first && value <= last;
}

/// The bytes of the valid character at the start of a text that is not empty; 1 when there is none.
std::size_t lengthOfCharacter(const char* text, std::size_t bytes)
{
    const auto byte = [text](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(text[i])); };
    const unsigned first = byte(0);
    const std::size_t length = isBetween(first, 0xC2, 0xDF) ? 2 : isBetween(first, 0xE0, 0xEF) ? 3 : isBetween(first, 0xF0, 0xF4) ? 4 : 1;
    if (length == 1 || length > bytes) {
        return 1;
    }
    // The second byte tells overlong forms, surrogates and what is above U+10FFFF.
    if (!isBetween(byte(1), first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80, first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF)) {
        return 1;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (!isBetween(byte(i), 0x80, 0xBF)) {
            return 1;
        }
    }
    return length;
}

std::string utf8Of(unsigned code)
{
    const auto byte = [](unsigned value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (code < 0x80) {
        return {byte(code)};
    }
    if (code < 0x800) {
        return {byte(0xC0 | code >> 6), byte(0x80 | (code & 0x3F))};
    }
    if (code < 0x10000) {
        return {byte(0xE0 | code >> 12), byte(0x80 | (code >> 6 & 0x3F)), byte(0x80 | (code & 0x3F))};
    }
    return {byte(0xF0 | code >> 18), byte(0x80 | (code >> 12 & 0x3F)), byte(0x80 | (code >> 6 & 0x3F)), byte(0x80 | (code & 0x3F))};
}

} // namespace

std::vector<std::string> charactersOf(const char* text, std::size_t bytes, std::size_t most)
{
    std::vector<std::string> characters;
    for (std::size_t i = 0; i < bytes && characters.size() < most; i += characters.back().size()) {
        characters.emplace_back(text + i, lengthOfCharacter(text + i, bytes - i));
    }
    return characters;
}

std::vector<std::string> charactersOf(const std::uint16_t* text, std::size_t units, std::size_t most)
{
    std::vector<std::string> characters;
    for (std::size_t i = 0; i < units && characters.size() < most; ++i) {
        unsigned code = text[i];
        if (isBetween(code, 0xD800, 0xDBFF) && i + 1 < units && isBetween(text[i + 1], 0xDC00, 0xDFFF)) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (isBetween(code, 0xD800, 0xDFFF)) {
            code = 0xFFFD;
        }
        characters.push_back(utf8Of(code));
    }
    return characters;
}

} // namespace brvUtils
