#pragma once

#include "brvUtils/os/Error.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace brvUtils::os {

/// A file that is read at any place, by any number of threads at once, while others may write, cut, replace or delete it.
class InputFile
{
public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Opens a regular file; an object opens one only. What is no regular file is refused, and not waited for.
    ErrorCode open(const std::string& path);

    /// Bytes of the file when it was opened.
    std::uint64_t size() const { return size_; }

    /// Reads bytes from `offset` on. \param got how many there are; fewer than `count` only at the end of the file, wherever
    /// that is now, or after an error.
    ErrorCode read(std::uint64_t offset, void* to, std::size_t count, std::size_t& got) const;

private:
    static constexpr std::intptr_t none = -1;

    std::intptr_t file_ = none; ///< As the system knows it.
    std::uint64_t size_ = 0;
};

} // namespace brvUtils::os
