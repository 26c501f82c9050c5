#pragma once

#include "brvUtils/os/linux/BoundedCopy.h"
#include "brvUtils/os/linux/Descriptor.h"

#include <cstddef>
#include <cstdint>

namespace brvUtils::os {

/// The file that a dump goes into. It gets its name when it is whole, where the file system can do that; elsewhere it has its
/// name from the start, which the notes say. Takes nothing from the heap.
class DumpTarget
{
public:
    /// \param path of a regular file or of nothing; anything else is left alone.
    bool open(const char* path, CopyNotes& notes);

    /// Writes at the end of what was written so far. False when not all of it was taken.
    bool append(const void* data, std::size_t size);
    /// Appends zeros, which take no space.
    void skip(std::uint64_t size) { position_ += size; }
    std::uint64_t position() const { return position_; }

    /// Makes the file whole and gives it its name, in place of one that was there.
    bool finish();
    /// Takes away what there is of it.
    void abandon();

private:
    const char* path_ = nullptr;
    CopyNotes* notes_ = nullptr;
    Descriptor file_;
    bool named_ = false;
    std::uint64_t position_ = 0;
};

} // namespace brvUtils::os
