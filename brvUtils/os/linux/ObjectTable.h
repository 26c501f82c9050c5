#pragma once

#include "brvUtils/os/linux/Handle.h"
#include "brvUtils/os/linux/TableFile.h"

#include <mutex>
#include <string_view>

namespace brvUtils::os {

/// What is asked of an object that does not exist yet.
struct ObjectRequest
{
    Kind kind;
    std::uint64_t initialState = 0;
    bool manualReset = false; ///< Of an event.
    std::size_t size = 0; ///< Of a segment, in bytes; an existing one must have as many.
};

struct ObjectOpening
{
    Handle* handle = nullptr;
    bool created = false;
    ErrorCode error = error::none;
};

/// The named objects that this process has open. It attaches to the table at the first opening and leaves with the last
/// closing. Any thread may call it.
class ObjectTable
{
public:
    /// The one of this process. Never destroyed: objects of static lifetime may close their handles late.
    static ObjectTable& instance();

    /// Opens or makes the object of that name; of a segment, also maps it.
    ObjectOpening open(const char* name, const ObjectRequest& request) noexcept;

    /// A handle on an object without a name, which this process alone knows.
    ObjectOpening openUnnamed(const ObjectRequest& request) noexcept;

    /// error::invalidHandle for a null handle, a closed one, or one of another kind.
    ErrorCode close(Handle* handle, Kind kind) noexcept;

    /// Whether the process of that ticket still runs; true also while that cannot be asked. The caller has a handle open.
    bool isAlive(std::uint32_t ticket) const;

    /// What is known of the process of that ticket; all zero when its record was used again or cannot be read now.
    ProcessIdentity processOf(std::uint32_t ticket) const;

private:
    ObjectTable();

    ObjectOpening openLocked(std::string_view name, const ObjectRequest& request);
    ErrorCode openSlot(std::string_view name, const ObjectRequest& request, std::uint32_t& slot, bool& created);
    std::uint32_t find(std::string_view name, std::uint64_t hash) const;
    ErrorCode allocate(std::string_view name, std::uint64_t hash, const ObjectRequest& request, std::uint32_t& slot);
    ErrorCode findFreeSlot(std::uint32_t& slot);
    ErrorCode hold(std::uint32_t slot);
    void letGo(std::uint32_t slot);
    bool isOpen(std::uint32_t slot) const;
    void discard(std::uint32_t slot);
    void discardDead();
    void discardDead(std::int64_t begin, std::int64_t end);
    void leaveIfUnused();

    void forgetInChild();
    void leaveAtExit();
    void forgetHandles();

    mutable std::mutex mutex_;
    TableFile file_;
    HandlePool pool_;
    std::uint32_t attachment_ = 0; ///< Counts them; handles of an earlier one (before a fork, an exit) are not in the table.
    std::size_t openHandles_ = 0;
    std::vector<std::uint32_t> holds_; ///< Per slot, the handles of this process.
};

} // namespace brvUtils::os
