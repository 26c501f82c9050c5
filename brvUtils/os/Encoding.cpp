#include "brvUtils/os/Encoding.h"

#include <cstddef>

namespace brvUtils::os {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t escapedByte = 0xDC00; // plus a byte of 0x80 or more

bool isSurrogate(char32_t c)
{
    return c >= 0xD800 && c <= 0xDFFF;
}

/// The character that starts at `position`, which moves behind it.
char32_t nextOfUtf8(const std::string& text, std::size_t& position)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(position++);
    if (first < 0x80) {
        return first;
    }
    const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    const char32_t smallest = more == 3 ? 0x10000 : more == 2 ? 0x800 : 0x80;
    if (first < 0xC2 || first > 0xF4 || text.size() - position < more) {
        return escapedByte + first;
    }
    char32_t c = first & (0x3FU >> more);
    for (std::size_t i = 0; i < more; ++i) {
        if ((byte(position + i) & 0xC0) != 0x80) {
            return escapedByte + first;
        }
        c = (c << 6) | (byte(position + i) & 0x3F);
    }
    if (c < smallest || c > 0x10FFFF || isSurrogate(c)) {
        return escapedByte + first;
    }
    position += more;
    return c;
}

/// The same for wide text, of either width.
char32_t nextOfWide(const std::wstring& text, std::size_t& position)
{
    const auto unit = [&](std::size_t i) { return static_cast<char32_t>(text[i]); };
    const char32_t first = unit(position++);
    if (first >= 0xD800 && first <= 0xDBFF && position < text.size() && unit(position) >= 0xDC00 && unit(position) <= 0xDFFF) {
        return 0x10000 + ((first - 0xD800) << 10) + (unit(position++) - 0xDC00);
    }
    return first;
}

void appendWide(std::wstring& text, char32_t c)
{
    if (sizeof(wchar_t) == 2 && c >= 0x10000) {
        text += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(c);
    }
}

void appendUtf8(std::string& text, char32_t c)
{
    if (c >= escapedByte + 0x80 && c <= escapedByte + 0xFF) {
        text += static_cast<char>(c - escapedByte);
        return;
    }
    if (isSurrogate(c) || c > 0x10FFFF) {
        c = replacement;
    }
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    const int more = c >= 0x10000 ? 3 : c >= 0x800 ? 2 : 1;
    text += static_cast<char>((0xF0U << (3 - more)) | (c >> (6 * more)));
    for (int i = more - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
    }
}

} // namespace

std::wstring wideFromUtf8(const std::string& text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        appendWide(wide, nextOfUtf8(text, position));
    }
    return wide;
}

std::string utf8FromWide(const std::wstring& text)
{
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        appendUtf8(utf8, nextOfWide(text, position));
    }
    return utf8;
}

} // namespace brvUtils::os
