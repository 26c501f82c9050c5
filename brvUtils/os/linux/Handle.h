#pragma once

#include "brvUtils/os/linux/TableLayout.h"

#include <memory>
#include <vector>

namespace brvUtils::os {

/// What one opening of an object gave. Records are never freed, only used again, so that a handle closed twice or used
/// after its closing is answered with an error, as on Windows.
struct alignas(64) Handle
{
    Kind kind = Kind::closed;
    bool manualReset = false;
    std::atomic<std::uint8_t> spinFailures{0}; ///< See SpinThenSleep.h.
    std::atomic<std::uint16_t> spinPause{0};
    std::uint32_t ticket = nobody; ///< Of this process, as it stands in state words.
    StateWord* state = nullptr; ///< Of the object: in its slot, or `own`.
    Table* table = nullptr; ///< Null for an object without a name.
    std::uint32_t slot = 0;
    std::uint32_t attachment = 0; ///< Of this process to the table; 0 for an object without a name.
    void* view = nullptr; ///< Of a segment.
    std::size_t size = 0;
    bool releasesPlainly = false; ///< See SemaphoreWord.h.

    alignas(64) StateWord own{0}; ///< State of an object without a name.
};

/// The records of this process. Not locked: the table's user locks.
class HandlePool
{
public:
    /// A record to fill in, or null when memory is short.
    Handle* take() noexcept;
    void giveBack(Handle* handle);

private:
    static constexpr std::size_t blockSize = 64;
    bool grow() noexcept;

    std::vector<std::unique_ptr<Handle[]>> blocks_;
    std::vector<Handle*> free_;
};

/// The opaque types of the headers are handles under another name.
template <typename Object>
Object* as(Handle* handle)
{
    return reinterpret_cast<Object*>(handle);
}

template <typename Object>
Handle* handleOf(Object* object)
{
    return reinterpret_cast<Handle*>(object);
}

} // namespace brvUtils::os
