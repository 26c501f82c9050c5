#pragma once

#include "brvUtils/os/InputFile.h"
#include "brvUtils/os/LittleEndian.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brvUtils::os {

/// Bytes of a file that are where its headers say. 0 bytes at 0 when there are none.
struct FilePart
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
};

/// Whether a part lies in the file, as large as that was when it was opened.
inline bool isWithin(const InputFile& file, const FilePart& part)
{
    return part.offset <= file.size() && part.size <= file.size() - part.offset;
}

/// Reads just so many bytes. False when the file does not hold them all.
inline bool readWhole(const InputFile& file, std::uint64_t offset, void* to, std::size_t count)
{
    std::size_t got = 0;
    return isWithin(file, {offset, count}) && file.read(offset, to, count, got) == error::none && got == count;
}

/// A header of so many bytes, and the numbers in it.
template<std::size_t size>
class FileHeader
{
public:
    bool read(const InputFile& file, std::uint64_t offset) { return readWhole(file, offset, bytes_.data(), size); }

    template<class Number>
    Number get(std::size_t place) const
    {
        return littleEndian<Number>(bytes_.data() + place);
    }
    std::uint16_t u16(std::size_t place) const { return get<std::uint16_t>(place); }
    std::uint32_t u32(std::size_t place) const { return get<std::uint32_t>(place); }
    std::uint64_t u64(std::size_t place) const { return get<std::uint64_t>(place); }

private:
    std::array<char, size> bytes_ {};
};

} // namespace brvUtils::os
