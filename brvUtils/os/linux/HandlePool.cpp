#include "brvUtils/os/linux/Handle.h"

#include <new>

namespace brvUtils::os {

Handle* HandlePool::take()
{
    if (free_.empty()) {
        auto* block = new (std::nothrow) Handle[blockSize];
        if (block == nullptr) {
            return nullptr;
        }
        blocks_.push_back(block);
        // Room for every record, so that giving back never needs memory.
        free_.reserve(blocks_.size() * blockSize);
        for (std::size_t i = blockSize; i-- > 0;) {
            free_.push_back(block + i);
        }
    }
    Handle* handle = free_.back();
    free_.pop_back();
    return handle;
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
