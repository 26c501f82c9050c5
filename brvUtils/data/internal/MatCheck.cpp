#include "brvUtils/data/internal/MatCheck.h"

#include "brvUtils/data/internal/MatBytes.h"

#include <matio.h>

#include <algorithm>
#include <vector>

namespace brvUtils {

namespace {

constexpr std::uint64_t mostInflation = 1100; // what is deflated grows by 1032 at most
constexpr int deepestNesting = 50;
constexpr std::uint32_t highestRank = 32;
constexpr std::uint32_t longestFieldName = 1024;

std::uint32_t swapped(std::uint32_t value)
{
    return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

/// Bytes that an element of a type takes in the file; 0 for what holds no numbers and no text.
std::uint32_t bytesOfType(std::uint32_t type)
{
    switch (type) {
    case MAT_T_INT8: case MAT_T_UINT8: case MAT_T_UTF8: return 1;
    case MAT_T_INT16: case MAT_T_UINT16: case MAT_T_UTF16: return 2;
    case MAT_T_INT32: case MAT_T_UINT32: case MAT_T_SINGLE: case MAT_T_UTF32: return 4;
    case MAT_T_DOUBLE: case MAT_T_INT64: case MAT_T_UINT64: return 8;
    default: return 0;
    }
}

struct Tag
{
    std::uint32_t type;
    std::uint32_t size;
    bool isShort; ///< Tag and content share eight bytes.
    std::uint32_t content; ///< Of a short one.
};

/// Goes through one variable of version 5 and those nested in it. Nothing is read beyond what the outer one claims to have.
class Checker
{
public:
    Checker(MatBytes& bytes, bool isSwapped) : bytes_(bytes), isSwapped_(isSwapped) {}

    /// The content of a variable of `size` bytes. Values at the end of it are not passed over where `depth` is 0.
    bool isSound(std::uint64_t size, int depth)
    {
        std::uint64_t left = size;
        Tag flags;
        std::uint32_t words[2];
        if (!tag(left, flags) || flags.type != MAT_T_UINT32 || flags.size != 8 || !numbers(left, words, 2)) {
            return false;
        }
        const std::uint32_t kind = words[0] & 0xFF;
        std::uint64_t elements = 0;
        Tag name;
        if (kind == MAT_C_OPAQUE) {
            return opaque(left) && (depth == 0 || skip(left, left));
        }
        if (!dimensions(left, elements) || !tag(left, name) || bytesOfType(name.type) != 1 || !pass(left, name)) {
            return false;
        }
        switch (kind) {
        case MAT_C_CELL: return matrices(left, elements, depth, 0) && skip(left, left);
        case MAT_C_STRUCT: return fields(left, elements, depth) && skip(left, left);
        case MAT_C_SPARSE: return sparse(left, (words[0] & MAT_F_COMPLEX) != 0) && skip(left, left);
        case MAT_C_FUNCTION: return matrices(left, elements, depth, 1) && skip(left, left); // matio reads them as if on their own
        case MAT_C_OBJECT: return depth == 0 || skip(left, left);
        default: break;
        }
        const bool isOfNumbers = kind == MAT_C_CHAR || (kind >= MAT_C_DOUBLE && kind <= MAT_C_UINT64);
        return isOfNumbers && values(left, elements, (words[0] & MAT_F_COMPLEX) != 0, depth) && (depth == 0 || skip(left, left));
    }

private:
    bool numbers(std::uint64_t& left, std::uint32_t* to, std::uint32_t count)
    {
        if (left < count * 4ULL || !bytes_.read(to, count * 4ULL)) {
            return false;
        }
        left -= count * 4ULL;
        for (std::uint32_t i = 0; isSwapped_ && i < count; ++i) {
            to[i] = swapped(to[i]);
        }
        return true;
    }

    bool tag(std::uint64_t& left, Tag& read)
    {
        std::uint32_t words[2];
        if (!numbers(left, words, 2)) {
            return false;
        }
        read.isShort = words[0] >> 16 != 0;
        read.type = words[0] & 0xFFFF;
        read.size = read.isShort ? words[0] >> 16 : words[1];
        read.content = words[1];
        return read.isShort ? read.size <= 4 : read.size <= left;
    }

    bool skip(std::uint64_t& left, std::uint64_t count)
    {
        if (left < count || !bytes_.skip(count)) {
            return false;
        }
        left -= count;
        return true;
    }

    /// The content behind a tag, filled up to eight bytes unless it is the last.
    bool pass(std::uint64_t& left, const Tag& passed)
    {
        return passed.isShort || skip(left, std::min<std::uint64_t>(left, (passed.size + 7ULL) / 8 * 8));
    }

    bool dimensions(std::uint64_t& left, std::uint64_t& elements)
    {
        Tag read;
        if (!tag(left, read) || read.type != MAT_T_INT32 || read.size % 8 > 4 || read.size % 4 != 0 || read.size < 8
            || read.size > highestRank * 4) {
            return false;
        }
        std::vector<std::uint32_t> sizes((read.size + 7) / 8 * 2);
        if (!numbers(left, sizes.data(), static_cast<std::uint32_t>(sizes.size()))) {
            return false;
        }
        sizes.resize(read.size / 4);
        elements = std::find(sizes.begin(), sizes.end(), 0U) == sizes.end() ? 1 : 0;
        for (const std::uint32_t size : sizes) {
            elements *= size;
            if (elements > left) { // each takes a byte at least, so that this cannot overflow either
                return false;
            }
        }
        return true;
    }

    bool values(std::uint64_t& left, std::uint64_t elements, bool isComplex, int depth)
    {
        for (int part = 0; part < (isComplex ? 2 : 1); ++part) {
            Tag read;
            if (elements == 0 && left == 0) {
                return true;
            }
            if (!tag(left, read) || bytesOfType(read.type) == 0 || read.size / bytesOfType(read.type) < elements) {
                return false;
            }
            if ((depth > 0 || (isComplex && part == 0)) && !pass(left, read)) {
                return false;
            }
        }
        return true;
    }

    /// It has a name where others have dimensions. These matio looks for, and then takes the eight bytes behind the tag, be it
    /// the name or what follows, for the tag of one.
    bool opaque(std::uint64_t& left)
    {
        Tag name;
        std::uint32_t words[2];
        return tag(left, name) && name.type == MAT_T_INT8 && numbers(left, words, 2) && (words[0] != MAT_T_INT8 || words[1] <= left);
    }

    bool sparse(std::uint64_t& left, bool isComplex)
    {
        for (int part = 0; part < (isComplex ? 4 : 3); ++part) {
            Tag read;
            if (!tag(left, read) || bytesOfType(read.type) == 0 || !pass(left, read)) {
                return false;
            }
        }
        return true;
    }

    bool fields(std::uint64_t& left, std::uint64_t elements, int depth)
    {
        Tag length;
        Tag names;
        if (!tag(left, length) || !length.isShort || length.type != MAT_T_INT32 || length.size != 4 || length.content == 0
            || length.content > longestFieldName || !tag(left, names) || names.type != MAT_T_INT8 || names.isShort
            || names.size % length.content != 0 || !pass(left, names)) {
            return false;
        }
        const std::uint64_t count = names.size / length.content;
        return (count == 0 || elements <= left / count) && matrices(left, elements * count, depth, 0);
    }

    /// \param least size of each.
    bool matrices(std::uint64_t& left, std::uint64_t count, int depth, std::uint32_t least)
    {
        if (depth >= deepestNesting || count > left / 8) {
            return false;
        }
        for (; count > 0; --count) {
            Tag read;
            if (!tag(left, read) || read.isShort || read.type != MAT_T_MATRIX || read.size < least
                || (read.size > 0 && !isSound(read.size, depth + 1))) {
                return false;
            }
            left -= read.size;
        }
        return true;
    }

    MatBytes& bytes_;
    bool isSwapped_;
};

} // namespace

std::size_t soundMat5Variables(const os::InputFile& file)
{
    constexpr std::uint64_t header = 128;
    constexpr std::uint64_t tagSize = 8;
    PlainMatBytes start(file, header - 2);
    char mark[2];
    if (!start.read(mark, sizeof mark)) {
        return 0;
    }
    const bool isSwapped = mark[0] == 'M'; // as computers write it whose first byte is the highest
    std::size_t sound = 0;
    for (std::uint64_t offset = header;; ++sound) {
        PlainMatBytes plain(file, offset);
        std::uint32_t words[2];
        if (!plain.read(words, sizeof words)) {
            return sound;
        }
        const std::uint32_t type = isSwapped ? swapped(words[0]) : words[0];
        const std::uint64_t size = isSwapped ? swapped(words[1]) : words[1];
        offset += tagSize;
        if (size > file.size() - offset) {
            return sound;
        }
        if (type == MAT_T_COMPRESSED) {
            DeflatedMatBytes deflated(file, offset, size);
            if (!deflated.read(words, sizeof words) || (isSwapped ? swapped(words[0]) : words[0]) != MAT_T_MATRIX) {
                return sound;
            }
            const std::uint64_t inflated = isSwapped ? swapped(words[1]) : words[1];
            if (inflated > size * mostInflation || !Checker(deflated, isSwapped).isSound(inflated, 0)) {
                return sound;
            }
        } else if (type != MAT_T_MATRIX || !Checker(plain, isSwapped).isSound(size, 0)) {
            return sound;
        }
        offset += size;
    }
}

std::size_t soundMat4Variables(const os::InputFile& file)
{
    constexpr std::uint32_t highestType = 4052;
    constexpr std::uint32_t bytesOfPrecision[] = {8, 4, 4, 2, 2, 1};
    std::size_t sound = 0;
    for (std::uint64_t offset = 0;; ++sound) {
        PlainMatBytes bytes(file, offset);
        std::uint32_t words[5]; // type, rows, columns, whether complex, length of the name
        if (!bytes.read(words, sizeof words)) {
            return sound;
        }
        const bool isSwapped = words[0] > highestType;
        if (isSwapped) {
            for (std::uint32_t& word : words) {
                word = swapped(word);
            }
        }
        const bool saysSwapped = words[0] / 1000 == 1; // which matio heeds in the words behind, whatever it made of this one
        const std::uint32_t precision = words[0] / 10 % 10;
        offset += sizeof words;
        const std::uint64_t left = file.size() - offset;
        if (words[0] >= 2000 || isSwapped != saysSwapped || precision > 5 || words[0] % 10 > 2 || words[4] == 0 || words[4] > left || words[3] > 1) {
            return sound;
        }
        const std::uint64_t elements = static_cast<std::uint64_t>(words[1]) * words[2];
        const std::uint64_t perElement = bytesOfPrecision[precision] * (words[3] + 1);
        if (elements > (left - words[4]) / perElement) {
            return sound;
        }
        offset += words[4] + elements * perElement;
    }
}

} // namespace brvUtils
