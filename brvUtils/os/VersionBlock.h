#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace brvUtils::os {

/// One block of a version resource. All are built alike, numbers low byte first, each part at a multiple of four bytes from
/// the resource's begin:
///
///     0  u16  bytes of the block with all that it holds, without what fills up to the next one
///     2  u16  size of the value: bytes, or characters when it is text
///     4  u16  1 when the value is text, else 0
///     6       name, UTF-16, ended by 0; then the value; then blocks that it holds
///
/// Lengths are not believed: nothing is read outside the block that holds this one. Refers to the bytes it was made of.
class VersionBlock
{
public:
    /// No block: holds nothing.
    VersionBlock() = default;

    /// The outermost block of a resource.
    static VersionBlock root(const std::string& resource);

    /// Whether there is one: its head and name are whole.
    explicit operator bool() const { return bytes_ != nullptr; }

    /// The first block in this one with a name, in any case; no block when there is none. \param name UTF-8.
    VersionBlock child(const std::string& name) const;

    /// The value's bytes as far as they are there.
    std::string value() const;

    /// The value as UTF-8 text up to its first 0. Its size is not believed, since tools count it in either unit.
    std::string text() const;

private:
    /// \param end of the block that holds it, at most that of the resource.
    VersionBlock(const std::string& bytes, std::size_t begin, std::size_t end);

    std::size_t valueSize() const;

    const std::string* bytes_ = nullptr;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t valueBegin_ = 0;
    std::wstring name_;
};

} // namespace brvUtils::os
