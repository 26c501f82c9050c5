#pragma once

#include "brvUtils/os/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brvUtils {

/// The blocks of a recording, one after the other, and the bytes of each one's payload in their order.
///
/// The file passes through a window of fixed size, whatever sizes the headers claim. What is skipped is not read. A line on
/// the error stream tells how many bytes stood where a block should have begun.
class IdcBlocks
{
public:
    static constexpr std::size_t longestTake = 256;

    enum class Found {
        block,
        nothingYet, ///< A window of bytes that begin no block was passed: there may be a lot of it.
        end
    };

    /// \param file open, and so longer than this object. \param window bytes, of which fewer than a take and a half are not of use.
    explicit IdcBlocks(const os::InputFile& file, std::size_t window = 256 * 1024);

    /// Goes to the next block, behind the payload of the last one. One that claims more than the file holds is searched for
    /// others that follow; without any the file was cut there, and that is its end.
    Found next();

    /// The data type of the block.
    std::uint16_t type() const { return type_; }

    /// The next bytes of the payload, until the next call. Null when it does not have as many: then none is used up.
    /// \param count at most `longestTake`.
    const unsigned char* take(std::size_t count)
    {
        if (count > payload_ || (count > end_ - at_ && !fill(count))) {
            return nullptr;
        }
        const unsigned char* const taken = window_.data() + at_;
        at_ += count;
        payload_ -= count;
        return taken;
    }

    /// Passes over bytes of the payload. False when it does not have as many: then none is used up.
    bool skip(std::uint64_t count);

    /// Passes over a text and the zero behind it. False when the payload has no zero.
    bool skipText();

    /// How many bytes of the file are done: up to the next one of the payload or of the search.
    std::uint64_t done() const { return windowEnd_ - (end_ - at_); }

private:
    bool fill(std::size_t count);
    void pass(std::uint64_t count);
    bool findMagic();
    void tellSkipped();

    const os::InputFile& file_;
    std::vector<unsigned char> window_;
    std::size_t at_ = 0; ///< The next byte, in the window.
    std::size_t end_ = 0; ///< Of what the window holds.
    std::uint64_t windowEnd_ = 0; ///< The same place in the file.
    std::uint64_t payload_ = 0; ///< How much of it is left.
    std::uint64_t skipped_ = 0; ///< Bytes that are no block, since the last one.
    bool cut_ = false; ///< The last header claimed more than the file holds.
    std::uint16_t type_ = 0;
};

} // namespace brvUtils
