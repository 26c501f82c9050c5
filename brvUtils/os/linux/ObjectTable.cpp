#include "brvUtils/os/linux/ObjectTable.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/ObjectName.h"
#include "brvUtils/os/linux/SegmentFile.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <pthread.h>
#include <sys/mman.h>

namespace brvUtils::os {

namespace {

constexpr std::uint32_t noSlot = slotCapacity;

} // namespace

ObjectTable& ObjectTable::instance()
{
    static auto* table = new ObjectTable;
    return *table;
}

ObjectTable::ObjectTable()
{
    // A fork must not copy the table in mid-change, and the child must not give back what its parent holds.
    pthread_atfork([] { instance().mutex_.lock(); }, [] { instance().mutex_.unlock(); }, [] { instance().forgetInChild(); });
    std::atexit([] { instance().leaveAtExit(); });
}

void ObjectTable::forgetInChild()
{
    file_.forget();
    forgetHandles();
    mutex_.unlock();
}

/// A process that ends without closing its handles is one that the kernel closes them for. Where others are left, the
/// last of them clears up; where there is nobody, nobody else would.
void ObjectTable::leaveAtExit()
{
    // Not by force: whoever ends the program in the midst of an opening leaves that to the next process, and a process
    // that is stopped with the lock in its hand holds up nobody's end.
    const std::unique_lock guard(mutex_, std::try_to_lock);
    if (guard && file_.isAttached() && file_.lockSoon() == error::none) {
        file_.leaveAtExit();
        if (!file_.isAttached()) {
            forgetHandles();
        }
    }
}

void ObjectTable::forgetHandles()
{
    openHandles_ = 0;
    std::fill(holds_.begin(), holds_.end(), 0);
}

ObjectOpening ObjectTable::open(const char* text, const ObjectRequest& request) noexcept
{
    std::string_view name;
    if (const ErrorCode fault = normalizeName(text, name); fault != error::none) {
        return {nullptr, false, fault};
    }
    const std::lock_guard guard(mutex_);
    try {
        return openLocked(name, request);
    } catch (const std::bad_alloc&) {
        return {nullptr, false, error::notEnoughMemory};
    }
}

ObjectOpening ObjectTable::openLocked(std::string_view name, const ObjectRequest& request)
{
    // All memory first: nothing may throw while the table is locked.
    holds_.resize(slotCapacity);
    Handle* handle = pool_.take();
    if (handle == nullptr) {
        return {nullptr, false, error::notEnoughMemory};
    }
    ErrorCode result = error::none;
    if (file_.isAttached()) {
        result = file_.lock();
    } else {
        result = file_.attach();
        if (result == error::none) {
            ++attachment_;
            discardDead();
        }
    }
    if (result != error::none) {
        pool_.giveBack(handle);
        return {nullptr, false, result};
    }

    std::uint32_t slot = noSlot;
    bool created = false;
    result = openSlot(name, request, slot, created);
    if (result == error::none && request.kind == Kind::segment) {
        result = mapSegmentFile(file_.folder(), slot, file_.table().slots[slot].size, *handle);
        if (result != error::none) {
            letGo(slot);
        }
    }
    if (result != error::none) {
        pool_.giveBack(handle);
        leaveIfUnused();
        return {nullptr, false, result};
    }
    handle->kind = request.kind;
    handle->state = &file_.table().slots[slot].state;
    handle->manualReset = file_.table().slots[slot].manualReset != 0;
    handle->table = &file_.table();
    handle->ticket = file_.ticket();
    handle->slot = slot;
    handle->attachment = attachment_;
    ++openHandles_;
    file_.unlock();
    return {handle, created, error::none};
}

ErrorCode ObjectTable::openSlot(std::string_view name, const ObjectRequest& request, std::uint32_t& slot, bool& created)
{
    const std::uint64_t hash = hashOf(name);
    slot = find(name, hash);
    if (slot != noSlot && !isOpen(slot)) {
        discard(slot);
        slot = noSlot;
    }
    created = slot == noSlot;
    if (created) {
        return allocate(name, hash, request, slot);
    }
    const Slot& found = file_.table().slots[slot];
    if (found.kind != request.kind) {
        return error::invalidHandle;
    }
    if (request.kind == Kind::segment && wholePages(request.size) > wholePages(found.size)) {
        return error::invalidParameter;
    }
    return hold(slot);
}

std::uint32_t ObjectTable::find(std::string_view name, std::uint64_t hash) const
{
    const Table& table = file_.table();
    const std::uint32_t used = std::min(table.header.slotsUsed, slotCapacity);
    for (std::uint32_t slot = 0; slot < used; ++slot) {
        if (table.index[slot].load(std::memory_order_relaxed) == hash && table.slots[slot].name[name.size()] == '\0'
            && std::memcmp(table.slots[slot].name, name.data(), name.size()) == 0) {
            return slot;
        }
    }
    return noSlot;
}

ErrorCode ObjectTable::allocate(std::string_view name, std::uint64_t hash, const ObjectRequest& request, std::uint32_t& slot)
{
    ErrorCode result = findFreeSlot(slot);
    if (result == error::none) {
        result = hold(slot);
    }
    if (result != error::none) {
        return result;
    }
    Table& table = file_.table();
    Slot& made = table.slots[slot];
    made.state.store(request.initialState, std::memory_order_relaxed);
    made.size = request.size;
    made.kind = request.kind;
    made.manualReset = request.manualReset ? 1 : 0;
    made.plainReleases = 0;
    std::memset(made.name, 0, sizeof made.name);
    std::memcpy(made.name, name.data(), name.size());
    table.header.slotsUsed = std::max(table.header.slotsUsed, slot + 1);
    // From here on the slot is in use: whoever finds it without a holder clears it away, with its file.
    table.index[slot].store(hash, std::memory_order_release);

    if (request.kind == Kind::segment) {
        result = createSegmentFile(file_.folder(), slot, request.size, file_.fileMode());
        if (result == error::diskFull || result == error::notEnoughMemory) {
            discardDead();
            result = createSegmentFile(file_.folder(), slot, request.size, file_.fileMode());
        }
        if (result != error::none) {
            letGo(slot);
        }
    }
    return result;
}

ErrorCode ObjectTable::findFreeSlot(std::uint32_t& slot)
{
    const Table& table = file_.table();
    const auto firstFree = [&] {
        std::uint32_t candidate = 0;
        while (candidate < std::min(table.header.slotsUsed, slotCapacity) && table.index[candidate].load(std::memory_order_relaxed) != 0) {
            ++candidate;
        }
        return candidate;
    };
    slot = firstFree();
    if (slot < table.header.slotsReserved) {
        return error::none;
    }
    if (slot < slotCapacity && file_.reserveSlots(slot + 1) == error::none) {
        return error::none;
    }
    discardDead();
    slot = firstFree();
    if (slot >= slotCapacity) {
        return error::notEnoughMemory;
    }
    return slot < table.header.slotsReserved ? error::none : file_.reserveSlots(slot + 1);
}

ErrorCode ObjectTable::hold(std::uint32_t slot)
{
    if (holds_[slot] == 0) {
        if (const int number = file_.holdSlot(slot); number != 0) {
            return fromErrno(number);
        }
    }
    ++holds_[slot];
    return error::none;
}

void ObjectTable::letGo(std::uint32_t slot)
{
    if (--holds_[slot] == 0) {
        file_.letGoOfSlot(slot);
        if (!isOpen(slot)) {
            discard(slot);
        }
    }
}

bool ObjectTable::isOpen(std::uint32_t slot) const
{
    return holds_[slot] != 0 || file_.slotsHeldByOthers(slot, slot + 1);
}

void ObjectTable::discard(std::uint32_t slot)
{
    Table& table = file_.table();
    if (table.slots[slot].kind == Kind::segment) {
        removeSegmentFile(file_.folder(), slot);
    }
    table.index[slot].store(0, std::memory_order_release);
    std::uint32_t& used = table.header.slotsUsed;
    while (used > 0 && table.index[used - 1].load(std::memory_order_relaxed) == 0) {
        --used;
    }
}

void ObjectTable::discardDead()
{
    discardDead(0, file_.table().header.slotsUsed);
}

void ObjectTable::discardDead(std::int64_t begin, std::int64_t end)
{
    if (begin >= end) {
        return;
    }
    // The kernel names one locked range, not the first: what lies on both sides of it is asked about again.
    const LockedRange held = file_.slotsHeldByOthers(begin, end);
    if (held) {
        discardDead(begin, held.begin);
        discardDead(held.end, end);
        return;
    }
    for (std::int64_t slot = begin; slot < std::min<std::int64_t>(end, file_.table().header.slotsUsed); ++slot) {
        const auto number = static_cast<std::uint32_t>(slot);
        if (holds_[number] == 0 && file_.table().index[number].load(std::memory_order_relaxed) != 0) {
            discard(number);
        }
    }
}

ObjectOpening ObjectTable::openUnnamed(const ObjectRequest& request) noexcept
{
    const std::lock_guard guard(mutex_);
    Handle* handle = pool_.take();
    if (handle == nullptr) {
        return {nullptr, false, error::notEnoughMemory};
    }
    handle->own.store(request.initialState, std::memory_order_relaxed);
    handle->kind = request.kind;
    handle->manualReset = request.manualReset;
    handle->state = &handle->own;
    return {handle, true, error::none};
}

ErrorCode ObjectTable::close(Handle* handle, Kind kind) noexcept
{
    const std::lock_guard guard(mutex_);
    if (handle == nullptr || handle->kind != kind) {
        return error::invalidHandle;
    }
    if (handle->view != nullptr) {
        munmap(handle->view, handle->size);
    }
    const bool inTable = handle->attachment != 0 && handle->attachment == attachment_ && file_.isAttached();
    const std::uint32_t slot = handle->slot;
    pool_.giveBack(handle);
    if (inTable) {
        --openHandles_;
        if (const ErrorCode fault = file_.lock(); fault != error::none) {
            // The table is not to be touched; the kernel's locks can still be given back.
            if (--holds_[slot] == 0) {
                file_.letGoOfSlot(slot);
            }
            if (openHandles_ == 0) {
                file_.abandon();
            }
            return fault;
        }
        letGo(slot);
        leaveIfUnused();
    }
    return error::none;
}

void ObjectTable::leaveIfUnused()
{
    if (openHandles_ != 0) {
        file_.unlock();
        return;
    }
    discardDead();
    file_.leave();
}

bool ObjectTable::isAlive(std::uint32_t ticket) const
{
    // A thread that waits for the lock of the table must not hold up a wait with a limit: the next look will tell.
    const std::unique_lock guard(mutex_, std::try_to_lock);
    return !guard || !file_.isAttached() || file_.isAlive(ticket);
}

ProcessIdentity ObjectTable::processOf(std::uint32_t ticket) const
{
    const std::unique_lock guard(mutex_, std::try_to_lock);
    if (!guard || !file_.isAttached()) {
        return {};
    }
    const ProcessIdentity& process = file_.table().processes[ticket % processCapacity].process;
    return process.ticket == ticket ? process : ProcessIdentity{};
}

} // namespace brvUtils::os
