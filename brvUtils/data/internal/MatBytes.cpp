#include "brvUtils/data/internal/MatBytes.h"

#include <algorithm>

namespace brvUtils {

bool PlainMatBytes::read(void* to, std::size_t count)
{
    std::size_t got = 0;
    const bool read = file_.read(offset_, to, count, got) == os::error::none && got == count;
    offset_ += got;
    return read;
}

bool PlainMatBytes::skip(std::uint64_t count)
{
    const bool there = offset_ <= file_.size() && count <= file_.size() - offset_;
    offset_ += there ? count : 0;
    return there;
}

DeflatedMatBytes::DeflatedMatBytes(const os::InputFile& file, std::uint64_t offset, std::uint64_t size)
    : file_(file)
    , offset_(offset)
    , left_(size)
    , ready_(inflateInit(&stream_) == Z_OK)
{
}

DeflatedMatBytes::~DeflatedMatBytes()
{
    if (ready_) {
        inflateEnd(&stream_);
    }
}

bool DeflatedMatBytes::fill()
{
    std::size_t got = 0;
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(block_.size(), left_));
    if (file_.read(offset_, block_.data(), count, got) != os::error::none) {
        return false;
    }
    offset_ += got;
    left_ -= got;
    stream_.next_in = block_.data();
    stream_.avail_in = static_cast<uInt>(got);
    return got > 0;
}

bool DeflatedMatBytes::read(void* to, std::size_t count)
{
    if (!ready_) {
        return false;
    }
    stream_.next_out = static_cast<unsigned char*>(to);
    stream_.avail_out = static_cast<uInt>(count);
    while (stream_.avail_out > 0) {
        if (stream_.avail_in == 0 && !fill()) {
            return false;
        }
        const int result = inflate(&stream_, Z_NO_FLUSH);
        if (result != Z_OK && (result != Z_STREAM_END || stream_.avail_out > 0)) {
            return false;
        }
    }
    return true;
}

bool DeflatedMatBytes::skip(std::uint64_t count)
{
    std::array<unsigned char, 4096> dropped;
    while (count > 0) {
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(dropped.size(), count));
        if (!read(dropped.data(), part)) {
            return false;
        }
        count -= part;
    }
    return true;
}

} // namespace brvUtils
