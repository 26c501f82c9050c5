#pragma once

#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/NameSpaceFolder.h"
#include "brvUtils/os/linux/RecordLock.h"
#include "brvUtils/os/linux/TableLayout.h"

#include <memory>
#include <string_view>
#include <vector>

namespace brvUtils::os {

/// The table as somebody sees it who only looks: a copy, while processes open and close. It is read, not mapped, since a
/// mapped file that is cut short kills who touches it. Nothing is locked, nobody is attached.
class TableView
{
public:
    /// Opens the file that is there and copies what is in use. error::fileNotFound when there is no table;
    /// error::accessDenied, error::invalidData, error::revisionMismatch as TableFile::attach.
    ErrorCode read();

    /// The slots in use whose copy is whole. That nobody has one open any more is for the locks to say.
    const std::vector<std::uint32_t>& used() const { return used_; }
    const Slot& slot(std::uint32_t number) const { return slots_[number]; }
    std::string_view name(std::uint32_t number) const { return slots_[number].name; }
    const ProcessRecord& process(std::uint32_t ticket) const { return processes_[ticket % processCapacity]; }

    /// The tickets of processes that are attached, and what others have locked of the slots.
    std::vector<LockedRange> ticketsAlive() const;
    bool isHeld(std::uint32_t slot) const { return static_cast<bool>(lockedByOthers(file_.get(), slotBytes + slot, slotBytes + slot + 1)); }

    /// Whether the slot still holds the object that was copied, or one that came after it under the same name.
    bool isStillThere(std::uint32_t slot) const;

    const NameSpaceFolder& folder() const { return folder_; }
    int file() const { return file_.get(); }

private:
    ErrorCode open();
    ErrorCode check(TableHeader& header) const;
    bool copy(const TableHeader& header);
    bool copySlot(std::uint32_t number);
    bool readIndex(std::uint32_t first, std::uint32_t count, std::uint64_t* hashes) const;

    NameSpaceFolder folder_;
    Descriptor file_;
    std::vector<std::uint32_t> used_;
    std::unique_ptr<Slot[]> slots_;
    std::unique_ptr<ProcessRecord[]> processes_;
};

} // namespace brvUtils::os
