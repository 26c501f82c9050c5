#include "brvUtils/ipc/NamedObjects.h"

#include "brvUtils/ipc/internal/ObjectRoles.h"
#include "brvUtils/os/ObjectList.h"
#include "brvUtils/os/Semaphore.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string_view>
#include <utility>

namespace brvUtils {

namespace {

using Outcome = NamedObjects::Outcome;

ObjectUser userOf(os::ObjectUser&& user)
{
    return {user.processId, std::move(user.program)};
}

NamedObject objectOf(os::ListedObject&& listed)
{
    constexpr std::uint64_t resetsAbove = 32;
    NamedObject object;
    object.kind = listed.kind == os::ObjectKind::semaphore ? NamedObject::Kind::semaphore
        : listed.kind == os::ObjectKind::event ? NamedObject::Kind::event : NamedObject::Kind::segment;
    object.name = std::move(listed.name);
    object.stateKnown = listed.stateKnown;
    object.taken = listed.taken;
    object.set = listed.set;
    object.manualReset = listed.manualReset;
    object.taker = listed.takerLife == os::TakerLife::nobody ? NamedObject::Taker::nobody
        : listed.takerLife == os::TakerLife::running ? NamedObject::Taker::running
        : listed.takerLife == os::TakerLife::ended ? NamedObject::Taker::ended : NamedObject::Taker::unknown;
    object.lastTaker = userOf(std::move(listed.taker));
    object.size = listed.size;
    object.holdersKnown = listed.holdersKnown;
    std::transform(listed.holders.begin(), listed.holders.end(), std::back_inserter(object.holders), [](os::ObjectUser& user) { return userOf(std::move(user)); });
    object.stamp = object.kind == NamedObject::Kind::event
        ? static_cast<std::uint64_t>(listed.resets) << resetsAbove | (listed.set ? 1 : 0)
        : listed.stateWord & 0xFFFFFFFF;
    return object;
}

Outcome outcomeOf(os::ErrorCode fault)
{
    switch (fault) {
    case os::error::none: return Outcome::seen;
    case os::error::fileNotFound: return Outcome::none;
    case os::error::accessDenied: return Outcome::refused;
    case os::error::revisionMismatch: return Outcome::otherVersion;
    case os::error::invalidData: return Outcome::damaged;
    default: return Outcome::unavailable;
    }
}

std::string problemOf(const os::ObjectList& list)
{
    switch (outcomeOf(list.error)) {
    case Outcome::seen:
    case Outcome::none: return {};
    case Outcome::refused:
        return list.place + " may not be used: it belongs to somebody else, or people have rights to it whom it is not for. Its owner or "
                            "an administrator corrects that, or STUDIO_IPC_NAMESPACE names another place.";
    case Outcome::otherVersion:
        return "The table of named objects in " + list.place + " was made by another version of the library. It is made anew by the "
                                                               "next module once all those that use it have ended.";
    case Outcome::damaged:
        return "The table of named objects in " + list.place + " is damaged. It is made anew by the next module once all those that use "
                                                               "it have ended.";
    default: return "The named objects in " + list.place + " cannot be seen: error " + std::to_string(list.error) + ".";
    }
}

} // namespace

NamedObjects lookAtNamedObjects(bool all)
{
    os::ObjectList list = os::listObjects();
    NamedObjects result;
    result.outcome = outcomeOf(list.error);
    result.problem = problemOf(list);
    result.place = std::move(list.place);
    result.leftOver = list.leftOver;
    result.objects.reserve(list.objects.size());
    for (os::ListedObject& listed : list.objects) {
        result.objects.push_back(objectOf(std::move(listed)));
    }
    assignRoles(result.objects);
    if (!all && !os::onlyObjectsOfTheLibrary()) {
        const auto foreign = [](const NamedObject& object) { return object.role == NamedObject::Role::other; };
        result.objects.erase(std::remove_if(result.objects.begin(), result.objects.end(), foreign), result.objects.end());
    }
    std::sort(result.objects.begin(), result.objects.end(), [](const NamedObject& a, const NamedObject& b) { return a.name < b.name; });
    return result;
}

bool belongsToInstance(const NamedObject& object, const std::string& instance)
{
    const bool shared = object.role == NamedObject::Role::portTable || object.role == NamedObject::Role::portGuard;
    return shared || object.name.compare(0, instance.size(), instance) == 0;
}

std::uint64_t changesBetween(const NamedObject& earlier, const NamedObject& later)
{
    if (earlier.kind != NamedObject::Kind::event) {
        return earlier.stamp != later.stamp ? 1 : 0;
    }
    // Each reset stands behind a set: from set to set by way of so many resets the state has changed twice as often.
    const std::uint64_t resets = ((later.stamp >> 32) - (earlier.stamp >> 32)) & 0x1FFFFFFF;
    const bool before = (earlier.stamp & 1) != 0;
    const bool after = (later.stamp & 1) != 0;
    return resets == 0 ? (before != after ? 1 : 0) : 2 * resets - (before ? 1 : 0) + (after ? 1 : 0);
}

SegmentGlance glanceAtSegment(const std::string& name)
{
    struct Reading
    {
        std::uint64_t fingerprint = 0;
        char first[2] = {};
        std::size_t read = 0;
    } reading;
    const auto take = [](void* context, const char* bytes, std::size_t count) {
        auto& to = *static_cast<Reading*>(context);
        for (std::size_t i = 0; i < count && to.read + i < sizeof to.first; ++i) {
            to.first[to.read + i] = bytes[i];
        }
        to.read += count;
        to.fingerprint = to.fingerprint * 1099511628211u + std::hash<std::string_view>()({bytes, count});
        return true;
    };
    SegmentGlance glance;
    glance.seen = os::readSegment(name.c_str(), take, &reading) == os::error::none;
    glance.fingerprint = reading.fingerprint;
    std::memcpy(&glance.firstTwoBytes, reading.first, sizeof reading.first);
    return glance;
}

LockRepair freeDeadLock(const NamedObject& lock)
{
    using Role = NamedObject::Role;
    LockRepair repair;
    if (lock.role != Role::partLock && lock.role != Role::initLock && lock.role != Role::portGuard) {
        return repair;
    }
    // Should it be gone by now, this makes one, free as a module would, for the moment.
    os::Semaphore* const semaphore = os::openSemaphore(lock.name.c_str(), true).semaphore;
    const os::DeadTaker dead = os::releaseSemaphoreOfDeadTaker(semaphore);
    os::closeSemaphore(semaphore);
    repair.freed = dead.found;
    repair.taker = {dead.processId, dead.program};
    return repair;
}

bool takersAreKnown()
{
    return os::deadTakersAreKnown();
}

} // namespace brvUtils
