#include "brvUtils/os/linux/Handle.h"

#include <new>

namespace brvUtils::os {

Handle* HandlePool::take() noexcept
{
    if (free_.empty() && !grow()) {
        return nullptr;
    }
    Handle* handle = free_.back();
    free_.pop_back();
    return handle;
}

bool HandlePool::grow() noexcept
{
    try {
        // Room for every record, so that giving back never needs memory.
        free_.reserve((blocks_.size() + 1) * blockSize);
        blocks_.push_back(std::make_unique<Handle[]>(blockSize));
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (std::size_t i = blockSize; i-- > 0;) {
        free_.push_back(&blocks_.back()[i]);
    }
    return true;
}

void HandlePool::giveBack(Handle* handle)
{
    handle->kind = Kind::closed;
    handle->manualReset = false;
    handle->spinFailures = 0;
    handle->spinPause = 0;
    handle->ticket = nobody;
    handle->state = &handle->own;
    handle->table = nullptr;
    handle->attachment = 0;
    handle->view = nullptr;
    handle->releasesPlainly = false;
    free_.push_back(handle);
}

} // namespace brvUtils::os
