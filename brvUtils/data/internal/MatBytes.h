#pragma once

#include "brvUtils/os/InputFile.h"

#include <zlib.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace brvUtils {

/// Bytes that come one after the other.
class MatBytes
{
public:
    virtual ~MatBytes() = default;
    /// False when there are not that many.
    virtual bool read(void* to, std::size_t count) = 0;
    virtual bool skip(std::uint64_t count) = 0;
};

/// Bytes as the file has them.
class PlainMatBytes : public MatBytes
{
public:
    PlainMatBytes(const os::InputFile& file, std::uint64_t offset) : file_(file), offset_(offset) {}
    bool read(void* to, std::size_t count) override;
    bool skip(std::uint64_t count) override;

private:
    const os::InputFile& file_;
    std::uint64_t offset_;
};

/// Bytes that the file has deflated.
class DeflatedMatBytes : public MatBytes
{
public:
    DeflatedMatBytes(const os::InputFile& file, std::uint64_t offset, std::uint64_t size);
    ~DeflatedMatBytes() override;
    DeflatedMatBytes(const DeflatedMatBytes&) = delete;
    DeflatedMatBytes& operator=(const DeflatedMatBytes&) = delete;
    bool read(void* to, std::size_t count) override;
    bool skip(std::uint64_t count) override;

private:
    bool fill();

    const os::InputFile& file_;
    std::uint64_t offset_;
    std::uint64_t left_; ///< In the file.
    z_stream stream_{};
    bool ready_;
    std::array<unsigned char, 4096> block_;
};

} // namespace brvUtils
