#include "brvUtils/data/internal/IdcBlocks.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstring>
#include <iostream>

namespace brvUtils {

namespace {

constexpr unsigned char magic[] = {0xAF, 0xFE, 0xC0, 0xC2};
constexpr std::size_t headerSize = 24;

} // namespace

IdcBlocks::IdcBlocks(const os::InputFile& file, std::size_t window)
    : file_(file)
    , window_(std::max(longestTake, static_cast<std::size_t>(std::min<std::uint64_t>(window, file.size()))))
{
}

IdcBlocks::Found IdcBlocks::next()
{
    pass(payload_);
    payload_ = 0;
    if (!findMagic()) {
        if (end_ - at_ >= sizeof magic || fill(sizeof magic)) {
            return Found::nothingYet;
        }
        skipped_ += end_ - at_;
        at_ = end_;
        if (!cut_) {
            tellSkipped();
        }
        return Found::end;
    }
    tellSkipped();
    if (end_ - at_ < headerSize && !fill(headerSize)) {
        at_ = end_;
        return Found::end;
    }
    const unsigned char* const header = window_.data() + at_;
    const std::uint32_t size = boost::endian::load_big_u32(header + 8);
    type_ = boost::endian::load_big_u16(header + 14);
    const std::uint64_t behind = done() + headerSize;
    if (size > file_.size() - std::min(behind, file_.size())) {
        // The file is cut here, unless the size is wrong and other blocks follow.
        at_ += sizeof magic;
        skipped_ += sizeof magic;
        cut_ = true;
        return Found::nothingYet;
    }
    cut_ = false;
    at_ += headerSize;
    payload_ = size;
    return Found::block;
}

bool IdcBlocks::skip(std::uint64_t count)
{
    if (count > payload_) {
        return false;
    }
    payload_ -= count;
    pass(count);
    return true;
}

bool IdcBlocks::skipText()
{
    while (payload_ > 0 && (at_ < end_ || fill(1))) {
        const std::size_t here = static_cast<std::size_t>(std::min<std::uint64_t>(payload_, end_ - at_));
        const void* const zero = std::memchr(window_.data() + at_, 0, here);
        const std::size_t passed = zero ? static_cast<const unsigned char*>(zero) - (window_.data() + at_) + 1 : here;
        at_ += passed;
        payload_ -= passed;
        if (zero) {
            return true;
        }
    }
    return false;
}

/// Moves what is left in the window to its front and fills it up. False when the file has fewer than `count` bytes here.
bool IdcBlocks::fill(std::size_t count)
{
    std::memmove(window_.data(), window_.data() + at_, end_ - at_);
    end_ -= at_;
    at_ = 0;
    // No further than the file went when it was opened: somebody may be writing to it.
    const std::uint64_t left = file_.size() - std::min(windowEnd_, file_.size());
    const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(window_.size() - end_, left));
    std::size_t got = 0;
    file_.read(windowEnd_, window_.data() + end_, wanted, got);
    end_ += got;
    windowEnd_ += got;
    return end_ >= count;
}

void IdcBlocks::pass(std::uint64_t count)
{
    const std::size_t here = static_cast<std::size_t>(std::min<std::uint64_t>(count, end_ - at_));
    at_ += here;
    windowEnd_ += std::min(count - here, file_.size() - std::min(windowEnd_, file_.size()));
}

/// Goes to the first place of the window where a block may begin; without one, to the last few bytes.
bool IdcBlocks::findMagic()
{
    if (end_ - at_ < sizeof magic && !fill(sizeof magic)) {
        return false;
    }
    const unsigned char* const from = window_.data() + at_;
    const unsigned char* const to = window_.data() + end_;
    const unsigned char* const found = std::search(from, to, std::begin(magic), std::end(magic));
    const std::size_t passed = found != to ? found - from : (to - from) - (sizeof magic - 1);
    skipped_ += passed;
    at_ += passed;
    return found != to;
}

void IdcBlocks::tellSkipped()
{
    if (skipped_ > 0) {
        std::cerr << std::to_string(skipped_) + " Bytes skipped\n";
        skipped_ = 0;
    }
}

} // namespace brvUtils
