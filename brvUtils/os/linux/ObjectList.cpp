#include "brvUtils/os/ObjectList.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/EventTransaction.h"
#include "brvUtils/os/linux/ObjectName.h"
#include "brvUtils/os/linux/SegmentFile.h"
#include "brvUtils/os/linux/SemaphoreWord.h"
#include "brvUtils/os/linux/TableLocks.h"
#include "brvUtils/os/linux/TableView.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace brvUtils::os {

namespace {

ObjectUser userOf(const ProcessIdentity& process)
{
    return {process.processId, std::string(process.program, strnlen(process.program, sizeof process.program))};
}

/// Who is attached to the table, and who has which slot open.
class Holders
{
public:
    explicit Holders(const TableView& view)
        : alive_(view.ticketsAlive())
    {
        for (const LockedRange& range : alive_) {
            for (std::int64_t ticket = range.begin; ticket < range.end; ++ticket) {
                add(view, static_cast<std::uint32_t>(ticket));
            }
        }
    }

    bool isAlive(std::uint32_t ticket) const
    {
        return std::any_of(alive_.begin(), alive_.end(), [&](const LockedRange& range) { return range.begin <= ticket && ticket < range.end; });
    }

    /// Whether each process that is attached could be looked into.
    bool all() const { return all_; }

    std::vector<ObjectUser> of(std::uint32_t slot) const
    {
        std::vector<ObjectUser> found;
        const auto behind = std::upper_bound(holds_.begin(), holds_.end(), slot, [](std::uint32_t value, const Hold& hold) { return value < hold.slot; });
        for (auto hold = behind; hold != holds_.begin() && std::prev(hold)->slot == slot; --hold) {
            found.push_back(processes_[std::prev(hold)->process]);
        }
        return found;
    }

    void sort() { std::stable_sort(holds_.begin(), holds_.end(), [](const Hold& a, const Hold& b) { return a.slot < b.slot; }); }

private:
    struct Hold
    {
        std::uint32_t slot;
        std::size_t process;
    };

    void add(const TableView& view, std::uint32_t ticket)
    {
        const ProcessIdentity& process = view.process(ticket).process;
        const std::vector<LockedRange> locks = process.ticket == ticket ? tableLocksOfProcess(process.processId, view.file()) : std::vector<LockedRange>();
        // The number may be that of another process here, if it runs in a container.
        const auto isItsTicket = [&](const LockedRange& range) { return range.begin <= ticketBytes + ticket && ticketBytes + ticket < range.end; };
        if (std::none_of(locks.begin(), locks.end(), isItsTicket)) {
            all_ = false;
            return;
        }
        for (const LockedRange& range : locks) {
            for (std::int64_t slot = range.begin; slot < std::min<std::int64_t>(range.end, slotCapacity); ++slot) {
                holds_.push_back({static_cast<std::uint32_t>(slot), processes_.size()});
            }
        }
        processes_.push_back(userOf(process));
    }

    std::vector<LockedRange> alive_;
    std::vector<ObjectUser> processes_;
    std::vector<Hold> holds_; ///< By slot.
    bool all_ = true;
};

void describeSemaphore(const TableView& view, const Holders& holders, ListedObject& object)
{
    const auto ticket = static_cast<std::uint32_t>(object.stateWord) & SemaphoreWord::takerBits;
    object.stateWord = ticket; // whether somebody sleeps is no change of its state
    object.taken = ticket != 0;
    if (ticket == nobody) {
        object.takerLife = TakerLife::nobody;
    } else if (ticket != 0) {
        object.takerLife = holders.isAlive(ticket) ? TakerLife::running : TakerLife::ended;
        const ProcessIdentity& process = view.process(ticket).process;
        object.taker = process.ticket == ticket ? userOf(process) : ObjectUser{};
    }
}

void describeEvent(const TableView& view, ListedObject& object)
{
    const bool reserved = (object.stateWord & eventState::reserved) != 0;
    const auto id = static_cast<std::uint32_t>(object.stateWord >> 32);
    object.set = (object.stateWord & eventState::signalled) != 0;
    if (reserved && !object.manualReset && EventTransaction::hasTaken(view.process(EventTransaction::recordOf(id)).transaction, id)) {
        object.set = false; // as good as taken: its taker was stopped or killed in the midst of it
    }
    object.resets = static_cast<std::uint32_t>((object.stateWord & eventState::resets) / eventState::oneReset);
    object.stateWord = (object.stateWord & eventState::resets) | (object.set ? 1 : 0);
}

ListedObject describe(const TableView& view, const Holders& holders, std::uint32_t number)
{
    const Slot& slot = view.slot(number);
    ListedObject object;
    object.name = view.name(number);
    object.stateWord = slot.state.load(std::memory_order_relaxed);
    switch (slot.kind) {
    case Kind::semaphore:
        object.kind = ObjectKind::semaphore;
        object.stateKnown = true;
        describeSemaphore(view, holders, object);
        break;
    case Kind::event:
        object.kind = ObjectKind::event;
        object.stateKnown = true;
        object.manualReset = slot.manualReset != 0;
        describeEvent(view, object);
        break;
    default:
        object.kind = ObjectKind::segment;
        object.size = slot.size;
        object.stateWord = 0;
        break;
    }
    return object;
}

/// False when an object that is held has no holder, although all could be asked: it went from hand to hand meanwhile.
bool collect(const TableView& view, ObjectList& list)
{
    Holders holders(view);
    holders.sort();
    list.objects.clear();
    list.leftOver = 0;
    bool whole = true;
    for (const std::uint32_t number : view.used()) {
        std::vector<ObjectUser> users = holders.of(number);
        if (users.empty() && !view.isHeld(number)) {
            list.leftOver += view.isStillThere(number) ? 1 : 0;
            continue;
        }
        whole = whole && !(users.empty() && holders.all());
        ListedObject object = describe(view, holders, number);
        object.holdersKnown = holders.all() && !users.empty();
        object.holders = std::move(users);
        list.objects.push_back(std::move(object));
    }
    return whole;
}

} // namespace

ObjectList listObjects()
{
    ObjectList list;
    constexpr int looks = 5;
    for (int look = 0; look < looks; ++look) {
        TableView view;
        list.error = view.read();
        list.place = view.folder().path();
        if (list.error != error::none || collect(view, list)) {
            break;
        }
    }
    return list;
}

bool onlyObjectsOfTheLibrary() noexcept
{
    return true;
}

ErrorCode readSegment(const char* text, bool (*take)(void* context, const char* bytes, std::size_t count), void* context)
{
    std::string_view name;
    TableView view;
    ErrorCode result = normalizeName(text, name);
    if (result == error::none) {
        result = view.read();
    }
    if (result != error::none) {
        return result;
    }
    const auto& used = view.used();
    const auto found = std::find_if(used.begin(), used.end(), [&](std::uint32_t slot) { return view.name(slot) == name && view.slot(slot).kind == Kind::segment; });
    if (found == used.end()) {
        return error::fileNotFound;
    }
    Descriptor file;
    file.take(openSegmentFileToLook(view.folder().descriptor(), *found));
    if (!file.open()) {
        return fromErrno(errno);
    }
    if (!view.isStillThere(*found)) {
        return error::fileNotFound; // the file may be another's
    }
    // Read, not mapped: a mapped file that is cut short kills who touches it.
    std::vector<char> piece(std::min<std::size_t>(view.slot(*found).size, 256 * 1024));
    for (std::uint64_t offset = 0; offset < view.slot(*found).size;) {
        const std::size_t wanted = std::min<std::uint64_t>(piece.size(), view.slot(*found).size - offset);
        const ssize_t count = pread(file.get(), piece.data(), wanted, static_cast<off_t>(offset));
        if (count <= 0) {
            return error::invalidData;
        }
        if (!take(context, piece.data(), static_cast<std::size_t>(count))) {
            break;
        }
        offset += static_cast<std::uint64_t>(count);
    }
    return error::none;
}

} // namespace brvUtils::os
